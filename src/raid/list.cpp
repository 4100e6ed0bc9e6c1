#include "raid/list.h"

#include <string.h>

#include <algorithm>

#include "foundation/failure.h"
#include "foundation/trace.h"

using namespace quorvel;

void list_add(struct list_links* entry, struct list_links* head) {
    entry->next = head->next;
    entry->prev = head;
    head->next->prev = entry;
    head->next = entry;
}

namespace quorvel {

void make_empty(list_links& head) {
    head = {&head, &head};
}

list_links* find_record(const list_links& head, std::span<const KeyField> fields, const char* key, int mode,
                        const char* kind) {
    auto field = std::find_if(fields.begin(), fields.end(), [mode](const KeyField& f) { return f.mode == mode; });
    if (key == nullptr || field == fields.end()) return fail_null(EINVAL);
    for (list_links* links = head.next; links != &head; links = links->next) {
        const char* record = reinterpret_cast<const char*>(links);
        if (kind != nullptr) trace(kTraceDetail, "%s : %s\n", kind, record + sizeof *links);
        if (strcmp(record + field->offset, key) == 0) return links;
    }
    return fail_null(ENODATA);
}

}  // namespace quorvel
