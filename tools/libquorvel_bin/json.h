// A JSON document on a stream, written as it is told: indented by two blanks, UTF-8 whatever the texts hold.
//
//     Json* json = json_start(stdout);
//     json_object(json);                       {
//     json_text(json, "name", "disk1");          "name": "disk1",
//     json_array(json, "sizes");                 "sizes": [
//     json_number(json, nullptr, 512);             512
//     json_end(json);                            ]
//     json_end(json);                          }
//     bool written = json_finish(json);
//
// A value in an object has a key, a value in an array or at the top none (a null pointer).
#pragma once

#include <stdint.h>
#include <stdio.h>

#include <string_view>

struct Json;

/// A document, or null when memory is short; every function below takes null and does nothing then.
[[nodiscard]] Json* json_start(FILE* stream);

void json_object(Json* json, const char* key = nullptr);
void json_array(Json* json, const char* key = nullptr);
/// Ends the object or array that was begun last.
void json_end(Json* json);

/// Bytes that are no UTF-8 are written as "\xHH"; so the document is valid whatever the text is.
void json_text(Json* json, const char* key, std::string_view text);
void json_number(Json* json, const char* key, int64_t number);
void json_truth(Json* json, const char* key, bool truth);
void json_null(Json* json, const char* key);

/// Ends the document with a line feed and releases it. False when something was left open, or memory ran out.
[[nodiscard]] bool json_finish(Json* json);
