// In place of the header that takes its masks from glibc's. Declares what <locale> wants; nothing here uses it.
namespace std {
struct ctype_base {
    typedef const int* __to_type;
    typedef unsigned short mask;
    static const mask upper = 1 << 0, lower = 1 << 1, alpha = 1 << 2, digit = 1 << 3, xdigit = 1 << 4, space = 1 << 5;
    static const mask print = 1 << 6, punct = 1 << 7, cntrl = 1 << 8, blank = 1 << 9;
    static const mask alnum = alpha | digit, graph = alnum | punct;
};
}  // namespace std
