#include "foundation/failure.h"
#include "quorvel/foundation.h"

int dumpf(const char* title, FILE* stream, const void* data, int length) {
    constexpr int kRow = 8;
    if (stream == nullptr) return quorvel::fail(EINVAL, EOF);
    fprintf(stream, "%p: --<%s>-- len=%d\n", data, title != nullptr ? title : "", length);
    const unsigned char* bytes = static_cast<const unsigned char*>(data);
    for (int i = 0; i < length && bytes != nullptr; i++) {
        if (i % kRow == 0) fprintf(stream, "%03X: ", static_cast<unsigned>(i));
        fprintf(stream, "%02X ", static_cast<unsigned>(bytes[i]));
        if (i % kRow == kRow - 1) fputc('\n', stream);
    }
    return fputc('\n', stream);
}

int dump(const char* title, const void* data, int length) {
    return dumpf(title, stdout, data, length);
}
