// In place of the header that asks for glibc's version.
#define _GLIBCXX_OS_DEFINES 1
struct __locale_struct;
typedef struct __locale_struct* __locale_t;
