#include "support/scenario.h"

#include <cstdint>
#include <iterator>
#include <sstream>

extern "C" int32_t debug, from_cmdline;

Words words_of(const std::string& text) {
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), {}};
}

std::string filled(std::string text, const Marks& marks) {
    for (const auto& [mark, meaning] : marks) {
        for (size_t at; (at = text.find(mark)) != text.npos;)
            text.replace(at, mark.size(), meaning);
    }
    return text;
}

Answer call(EntryPoint entry_point, Words words) {
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    int result = 0;
    std::string text = printed_by([&] { result = entry_point(static_cast<int>(argv.size()), argv.data()); });
    return {result, text};
}

namespace {

int32_t* global_of(const std::string& name) {
    return name == "debug" ? &debug : name == "from_cmdline" ? &from_cmdline : nullptr;
}

// A row that changes the appliance; false for one that looks at it or asks.
bool prepare(const std::string& what, const std::string& how, const std::string& text) {
    if (int32_t* global = global_of(what); global != nullptr && how == ">") {
        *global = std::stoi(text);
    } else if (how == ">") {
        write_file(what, text);
    } else if (how == "#!") {
        stand_in(what, text);
    } else if (how == "->") {
        make_link(what, text);
    } else if (how == "/") {
        make_directory(what);
    } else if (how == "-") {
        remove_tree(what);
    } else {
        return false;
    }
    return true;
}

// What a row looks at is.
std::string state_of(const std::string& what) {
    const int32_t* global = global_of(what);
    return global != nullptr ? std::to_string(*global) : read_file(what);
}

bool is_number(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789", text[0] == '-' && text.size() > 1) == text.npos;
}

template <typename Value>
void compare(const char* file, int line, const std::string& what, const Value& expected, const Value& actual) {
    if (expected == actual) return;
    ADD_FAILURE_AT(file, line) << what << "\n  expected: " << testing::PrintToString(expected)
                               << "\n    actual: " << testing::PrintToString(actual);
}

}  // namespace

void play(const std::string& name, const Ask& ask, const Marks& marks) {
    const std::string file = table_file(name);
    std::vector<int> lines;
    size_t row = 0;
    for (const auto& fields : table_rows(name, 3, &lines)) {
        const int line = lines[row++];
        const std::string &how = fields[1], expected = filled(fields[2], marks), what = filled(fields[0], marks);
        testing::ScopedTrace place(file.c_str(), line, fields[0]);
        if (prepare(what, how, expected)) continue;
        Words words = words_of(fields[0]);
        for (std::string& word : words)
            word = filled(word, marks);
        if (how == "=")
            compare(file.c_str(), line, what, expected, state_of(what));
        else if (is_number(how))
            compare(file.c_str(), line, fields[0], Answer{std::stoi(how), expected}, ask(words));
        else
            ADD_FAILURE_AT(file.c_str(), line) << "unknown verb: " << how;
    }
}
