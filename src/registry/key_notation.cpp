#include "registry/key_notation.h"

#include <string.h>

#include <iterator>
#include <string_view>

#include "foundation/failure.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/foundation.h"
#include "registry/config_buffers.h"

using namespace quorvel;

namespace {

// Components go in at the head of the list and come out in reverse order. A name points into the text.
struct PathItem {
    std::string_view name;
    PathItem* next;
};

struct PathItems {
    PathItem items[kRegistryText / 2];  // a text of the registry has no more: a separator stands between two
    size_t count = 0;
    PathItem* present_item_list = nullptr;
};

// False when there are more components than a text of the registry has.
[[nodiscard]] bool push_components(PathItems& path, const char* text, const char* separator) {
    for (text += strspn(text, separator); *text != '\0'; text += strspn(text, separator)) {
        if (path.count == std::size(path.items)) return false;
        size_t length = strcspn(text, separator);
        PathItem& item = path.items[path.count++];
        item = {
            {text, length},
            path.present_item_list
        };
        path.present_item_list = &item;
        text += length;
    }
    return true;
}

// False when the target had no room for all of it; as much as fits is there then.
[[nodiscard]] bool append_items(char* target, size_t size, char prefix, const PathItems& path) {
    bool cut = false;
    size_t length = strlen(target);
    for (const PathItem* item = path.present_item_list; item != nullptr; item = item->next) {
        trace(kTrace, "present_item_list->name=%.*s\n", static_cast<int>(item->name.size()), item->name.data());
        length = add_at(target, size, length, cut, {&prefix, 1});
        length = add_at(target, size, length, cut, item->name);
        trace(kTrace, "filename=%s\n", target);
    }
    return !cut;
}

const char* without_root(const char* path) {
    return *path == '/' ? path + 1 : path;
}

}  // namespace

bool quorvel::append_path(char* path, size_t size, const char* components) {
    PathItems items;
    bool complete = push_components(items, components, ".");
    return append_items(path, size, '/', items) && complete;
}

void quorvel::append_dotted(char* dotted, size_t size, const char* path) {
    PathItems items;
    // A path of the registry has no more components, and its dotted form is for people.
    (void)push_components(items, without_root(path), "/");
    (void)append_items(dotted, size, '.', items);
}

void quorvel::append_dotted_in_place(char* path, size_t size) {
    char components[kRegistryText];
    copy_text(components, sizeof components, path);
    size_t first = strspn(path, "/");
    path[first + strcspn(path + first, "/")] = '\0';
    append_dotted(path, size, components);
}

int LibQuorvelBin_SeparateRegKeyAndPath(const char* key) {
    // A cut key would name another entry.
    if (strlen(key) >= sizeof pscSrc) return fail(ENAMETOOLONG);
    copy_text(pscSrc, sizeof pscSrc, key);
    trace(kTrace, "%s: pscSrc=%s\n", __func__, pscSrc);
    bool slash_form = contains(pscSrc, "/");
    if (!slash_form && !contains(pscSrc, ".")) return fail(EINVAL);

    char* p = pscSrc + strcspn(pscSrc, ".");
    if (*p != '\0') *p++ = '\0';
    trace(kTrace, "pscKey=%s\n", pscSrc);
    trace(kTrace, "p=%s\n", p);
    if (slash_form) {
        // No word is an empty name, and an empty file one that does not exist.
        (void)LibQuorvelBin_GetLastWord(scKeyName, pscSrc, "/", sizeof scKeyName - 1);
        return LibQuorvelBin_AvoidLastWord(scKeyPath, pscSrc, "/");
    }
    copy_text(scKeyName, sizeof scKeyName, pscSrc);
    return append_path(scKeyPath, sizeof scKeyPath, p) ? 0 : fail(ENAMETOOLONG);
}
