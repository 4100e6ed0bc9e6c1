#include "report/xml.h"

#include "report/table.h"
#include "report/views.h"
#include "utf8.h"

namespace report {

namespace {

struct Reference {
    char character;
    const char* text;
};

constexpr Reference kReferences[] = {
    {'&',  "&amp;" },
    {'<',  "&lt;"  },
    {'>',  "&gt;"  },
    {'"',  "&quot;"},
    {'\'', "&#39;" },
};

const char* reference_of(char character) {
    for (const Reference& reference : kReferences) {
        if (reference.character == character) return reference.text;
    }
    return nullptr;
}

// Control characters, and the two code points that are no characters.
bool is_unknown_to_xml(std::string_view sequence) {
    const auto first = static_cast<unsigned char>(sequence[0]);
    return first < 0x20 || sequence == "\xef\xbf\xbe" || sequence == "\xef\xbf\xbf";
}

}  // namespace

void print_xml(FILE* stream, std::string_view text) {
    while (!text.empty()) {
        const size_t length = utf8_sequence(text);
        const std::string_view sequence = front_of(text, length > 0 ? length : 1);
        const char* reference = reference_of(sequence[0]);
        if (reference != nullptr) {
            fputs(reference, stream);
        } else if (length == 0 || is_unknown_to_xml(sequence)) {
            fputs("\xef\xbf\xbd", stream);
        } else {
            fwrite(sequence.data(), 1, sequence.size(), stream);
        }
        text = behind(text, sequence.size());
    }
}

void print_xml_cut(FILE* stream, std::string_view text, size_t columns) {
    const bool fits = width_of(text) <= columns;
    print_xml(stream, fits ? text : fitting(text, columns - 1));
    if (!fits) fputs("…", stream);
}

}  // namespace report
