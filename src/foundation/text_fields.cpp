// Cutting texts into words and fields.
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <optional>

#include "foundation/failure.h"
#include "foundation/handles.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

// Where the first line of a text ends: its first line feed that is not a leading one, or the text's end.
size_t first_line_end(const char* text, size_t length) {
    size_t start = 0;
    while (text[start] == '\n')
        start++;
    const void* feed = memchr(text + start, '\n', length - start);
    return feed != nullptr ? static_cast<size_t>(static_cast<const char*>(feed) - text) : length;
}

bool is_one_of(char c, const char* delimiters) {
    while (*delimiters != '\0' && *delimiters != c)
        delimiters++;
    return *delimiters != '\0';
}

// The index-th field, as repeated strtok calls on a copy whose first line end was overwritten would find it: a field
// never crosses that place, but the search for the next one steps over it.
std::optional<std::string_view> find_field(const char* text, const char* delimiters, int index) {
    size_t length = strlen(text);
    size_t cut = first_line_end(text, length);
    if (index <= 0) return std::string_view(text, cut);
    for (size_t at = 0;;) {
        size_t limit = at <= cut ? cut : length;
        while (at < limit && is_one_of(text[at], delimiters))
            at++;
        if (at == limit) return {};
        size_t end = at + 1;
        while (end < limit && !is_one_of(text[end], delimiters))
            end++;
        if (--index == 0) return std::string_view(text + at, end - at);
        if (end >= length) return {};
        at = end + 1;
    }
}

}  // namespace

int LibQuorvelBin_GetSpecifiedKey(char* dst, uint64_t dst_size, const char* text, const char* delimiters, int index) {
    if (dst == nullptr || text == nullptr || delimiters == nullptr) return fail(EINVAL);
    const auto field = find_field(text, delimiters, index);
    if (!field) return fail(ENODATA);
    if (field->size() >= dst_size) return fail(ERANGE);
    // The field may lie in dst itself.
    memmove(dst, field->data(), field->size());
    dst[field->size()] = '\0';
    return 0;
}

int LibQuorvelBin_GetLastWord(char* dst, const char* text, const char* separator, size_t length) {
    if (dst == nullptr || text == nullptr || separator == nullptr) return fail(EINVAL);
    const char* last = *separator != '\0' ? strrchr(text, *separator) : nullptr;
    strncpy(dst, last != nullptr ? last + 1 : text, length);
    trace(kTrace, "%s : dst = %.*s\n", __func__, static_cast<int>(length), dst);
    return 0;
}

int LibQuorvelBin_AvoidLastWord(char* dst, const char* text, const char* separator) {
    if (dst == nullptr || text == nullptr || separator == nullptr) return fail(EINVAL);
    Heap<char> copy(strdup(text));
    if (!copy) return -1;
    char* block = copy.get();
    trace(kTraceHeap, "%s : %d bytes malloced at %p\n", __func__, static_cast<int>(strlen(text)) + 1,
          static_cast<void*>(block));
    char* last = strrchr(block, *separator);
    (last != nullptr ? last : block)[0] = '\0';
    trace(kTrace, "%s: pccTmpSrcStart=%s\n", __func__, block);
    strcpy(dst, block);
    trace(kTrace, "%s: dst=%s\n", __func__, dst);
    trace(kTraceHeap, "%s : freed at %p\n", __func__, static_cast<void*>(block));
    return 0;
}

int LibQuorvelBin_IsContainedInStringList(const char* list, const char* item, const char* separator) {
    if (list == nullptr) return fail(EINVAL);
    if (item == nullptr || separator == nullptr) return fail(EINVAL, 0);
    size_t length = strlen(item);
    const char* element = list;
    while (*element != '\0') {
        const char* end = strstr(element + 1, separator);
        if (end == nullptr) break;
        if (static_cast<size_t>(end - element) == length && memcmp(element, item, length) == 0) return 1;
        element = end + strlen(separator);
    }
    return strncmp(element, item, length) == 0 ? 1 : 0;
}

int LibQuorvelBin_Basename(char* dst, const char* path, size_t size) {
    if (dst == nullptr || path == nullptr || size == 0) return fail(EINVAL);
    const char* component = last_component(path);
    // No terminator: the caller's cleared buffer provides it.
    // NOLINTNEXTLINE(bugprone-not-null-terminated-result)
    memcpy(dst, component, std::min(strlen(component), size - 1));
    return 0;
}

int LibQuorvelBin_IsAllNumericStr(const char* text, int length) {
    if (length < 1) return 1;
    if (text == nullptr) return fail(EINVAL, 0);
    return is_digit(text[0]) ? 1 : 0;
}

void remove_character(char* text, int length, char ch) {
    if (text == nullptr) return;
    for (int i = 0; i < length - 1; i++) {
        if (text[i] == ch) memmove(text + i, text + i + 1, static_cast<size_t>(length - 1 - i));
    }
}
