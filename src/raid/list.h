// The inventory's lists: circular, with a sentinel head; every record starts with its links, and behind them its name.
#pragma once

#include <stdlib.h>

#include <span>

#include "foundation/handles.h"
#include "quorvel/raid.h"

/// Inserts a record right behind the head.
extern "C" void list_add(struct list_links* entry, struct list_links* head);

namespace quorvel {

void make_empty(list_links& head);

/// A zero-filled record, or null. Once listed it is never freed.
template <typename Record>
[[nodiscard]] Heap<Record> new_record() {
    return Heap<Record>(static_cast<Record*>(calloc(1, sizeof(Record))));
}

/// The record with these links, or null for the head.
template <typename Record>
[[nodiscard]] Record* record_at(list_links* links, const list_links& head) {
    return links != &head ? reinterpret_cast<Record*>(links) : nullptr;
}
template <typename Record>
[[nodiscard]] Record* first_of(const list_links& head) {
    return record_at<Record>(head.next, head);
}
template <typename Record>
[[nodiscard]] Record* next_of(const Record* record, const list_links& head) {
    return record_at<Record>(record->links.next, head);
}

/// Which text of a record a search mode compares.
struct KeyField {
    int mode;
    size_t offset;
};

/// The first record whose text chosen by the mode is the key, or null. Traces "KIND : NAME" for each record looked at,
/// unless kind is null.
[[nodiscard]] list_links* find_record(const list_links& head, std::span<const KeyField> fields, const char* key,
                                      int mode, const char* kind);

}  // namespace quorvel
