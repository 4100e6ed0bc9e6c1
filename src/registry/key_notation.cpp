#include "registry/key_notation.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "foundation/handles.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/foundation.h"
#include "registry/config_buffers.h"

using namespace quorvel;

namespace {

// Components go in at the head of the list and come out in reverse order.
struct PathItem {
    char name[kRegistryText];
    PathItem* next;
};

bool push_item(PathItem*& present_item_list, std::string_view name) {
    PathItem* item = static_cast<PathItem*>(malloc(sizeof(PathItem)));
    if (item == nullptr) return false;
    copy_text(item->name, sizeof item->name, name);
    item->next = present_item_list;
    present_item_list = item;
    return true;
}

bool push_components(PathItem*& present_item_list, const char* text, const char* separator) {
    for (text += strspn(text, separator); *text != '\0'; text += strspn(text, separator)) {
        size_t length = strcspn(text, separator);
        if (!push_item(present_item_list, {text, length})) return false;
        text += length;
    }
    return true;
}

// False when the target had no room for all of it.
bool append_item(char* target, size_t size, char prefix, const char* name) {
    size_t length = strlen(target);
    int wanted = snprintf(target + length, size - length, "%c%s", prefix, name);
    return wanted >= 0 && static_cast<size_t>(wanted) < size - length;
}

// Uses the list up, whatever fits.
bool append_items(char* target, size_t size, char prefix, PathItem* present_item_list) {
    bool fits = true;
    while (present_item_list != nullptr) {
        Heap<PathItem> item(present_item_list);
        present_item_list = item->next;
        trace(kTrace, "present_item_list->name=%s\n", item->name);
        fits = append_item(target, size, prefix, item->name) && fits;
        trace(kTrace, "filename=%s\n", target);
    }
    return fits;
}

const char* without_root(const char* path) {
    return *path == '/' ? path + 1 : path;
}

}  // namespace

bool quorvel::append_path(char* path, size_t size, const char* components) {
    PathItem* present_item_list = nullptr;
    bool complete = push_components(present_item_list, components, ".");
    return append_items(path, size, '/', present_item_list) && complete;
}

void quorvel::append_dotted(char* dotted, size_t size, const char* path) {
    PathItem* present_item_list = nullptr;
    (void)push_components(present_item_list, without_root(path), "/");
    (void)append_items(dotted, size, '.', present_item_list);
}

void quorvel::append_dotted_in_place(char* path, size_t size) {
    PathItem* present_item_list = nullptr;
    (void)push_components(present_item_list, without_root(path), "/");
    size_t first = strspn(path, "/");
    path[first + strcspn(path + first, "/")] = '\0';
    (void)append_items(path, size, '.', present_item_list);
}

int LibQuorvelBin_SeparateRegKeyAndPath(const char* key) {
    // A cut key would name another entry.
    if (strlen(key) >= sizeof pscSrc) return -1;
    copy_text(pscSrc, sizeof pscSrc, key);
    trace(kTrace, "%s: pscSrc=%s\n", __func__, pscSrc);
    bool slash_form = contains(pscSrc, "/");
    if (!slash_form && !contains(pscSrc, ".")) return -1;

    char* p = pscSrc + strcspn(pscSrc, ".");
    if (*p != '\0') *p++ = '\0';
    trace(kTrace, "pscKey=%s\n", pscSrc);
    trace(kTrace, "p=%s\n", p);
    if (slash_form) {
        (void)LibQuorvelBin_GetLastWord(scKeyName, pscSrc, "/", sizeof scKeyName - 1);
        return LibQuorvelBin_AvoidLastWord(scKeyPath, pscSrc, "/");
    }
    copy_text(scKeyName, sizeof scKeyName, pscSrc);
    return append_path(scKeyPath, sizeof scKeyPath, p) ? 0 : -1;
}
