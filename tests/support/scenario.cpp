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

// Whether the row is a change of the appliance, or a look at it, which is then done.
bool prepare(const std::string& what, const std::string& how, const std::string& text) {
    int32_t* global = global_of(what);
    if (global != nullptr && how == ">") {
        *global = std::stoi(text);
    } else if (global != nullptr && how == "=") {
        EXPECT_EQ(std::to_string(*global), text) << what;
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
    } else if (how == "=") {
        EXPECT_EQ(read_file(what), text) << what;
    } else {
        return false;
    }
    return true;
}

}  // namespace

void play(const std::string& name, const Ask& ask, const Marks& marks) {
    int row = 0;
    for (const auto& [what, how, text] : table<3>(name)) {
        SCOPED_TRACE(name + ", row " + std::to_string(++row) + ": " + what);
        const std::string expected = filled(text, marks);
        if (prepare(filled(what, marks), how, expected)) continue;
        Words words = words_of(what);
        for (std::string& word : words)
            word = filled(word, marks);
        EXPECT_EQ(ask(words), (Answer{std::stoi(how), expected}));
    }
}
