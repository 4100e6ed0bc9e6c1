#include "json.h"

#include <stddef.h>
#include <stdlib.h>

#include <new>

#include "utf8.h"

// The stack of the writer is given its allocator; one that it makes itself would need the C++ library.
#define RAPIDJSON_NEW(type) nullptr
#define RAPIDJSON_DELETE(pointer) static_cast<void>(pointer)
#include <rapidjson/prettywriter.h>

namespace {

struct Stream {
    using Ch = char;
    FILE* file;
    void Put(char c) { putc_unlocked(c, file); }
    void Flush() {}
};

constexpr unsigned kMostDepth = 16;

// The writer's stack, a record a level, in one block: nothing is left that could fail half-way.
struct Block {
    [[maybe_unused]] static constexpr bool kNeedFree = false;
    alignas(max_align_t) char bytes[64 * kMostDepth] = {};

    void* Malloc(size_t size) { return size <= sizeof bytes ? bytes : nullptr; }
    void* Realloc(void*, size_t, size_t size) { return Malloc(size); }
    static void Free(void*) {}
};

using Writer = rapidjson::PrettyWriter<Stream, rapidjson::UTF8<>, rapidjson::UTF8<>, Block>;

}  // namespace

struct Json {
    explicit Json(FILE* file) : stream{file}, writer(stream, &block, kMostDepth) { writer.SetIndent(' ', 2); }

    Stream stream;
    Block block;
    Writer writer;
    bool is_array[kMostDepth] = {};
    unsigned depth = 0;
    bool failed = false;
};

namespace {

void write_text(Json& json, std::string_view text) {
    json.failed |= !json.writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

// The writer of this document, behind the key if there is one.
Writer& at(Json& json, const char* key) {
    if (key != nullptr) json.writer.Key(key);
    return json.writer;
}

void begin(Json* json, const char* key, bool is_array) {
    if (json == nullptr || json->depth == kMostDepth) return;
    json->is_array[json->depth++] = is_array;
    Writer& writer = at(*json, key);
    if (is_array) writer.StartArray();
    if (!is_array) writer.StartObject();
}

}  // namespace

Json* json_start(FILE* stream) {
    void* memory = malloc(sizeof(Json));
    return memory != nullptr ? new (memory) Json(stream) : nullptr;
}

void json_object(Json* json, const char* key) {
    begin(json, key, false);
}

void json_array(Json* json, const char* key) {
    begin(json, key, true);
}

void json_end(Json* json) {
    if (json == nullptr || json->depth == 0) return;
    json->depth--;
    if (json->is_array[json->depth]) {
        json->writer.EndArray();
    } else {
        json->writer.EndObject();
    }
}

void json_text(Json* json, const char* key, std::string_view text) {
    if (json == nullptr) return;
    (void)at(*json, key);
    if (is_utf8(text)) return write_text(*json, text);
    const size_t size = escaped_size(text.size());
    char* escaped = static_cast<char*>(malloc(size));
    if (escaped != nullptr) write_text(*json, {escaped, escape_bytes(escaped, size, text, false)});
    if (escaped == nullptr) json->failed |= !json->writer.Null();
    free(escaped);
}

void json_number(Json* json, const char* key, int64_t number) {
    if (json != nullptr) at(*json, key).Int64(number);
}

void json_truth(Json* json, const char* key, bool truth) {
    if (json != nullptr) at(*json, key).Bool(truth);
}

void json_null(Json* json, const char* key) {
    if (json != nullptr) at(*json, key).Null();
}

bool json_finish(Json* json) {
    if (json == nullptr) return false;
    json->stream.Put('\n');
    const bool complete = !json->failed && json->depth == 0;
    json->~Json();
    free(json);
    return complete;
}
