// Owned handles: whatever is opened or allocated closes or frees itself, on every path out of a function.
#pragma once

#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <memory>

namespace quorvel {

template <auto Function>
struct Deleter {
    template <typename Handle>
    void operator()(Handle* handle) const {
        (void)Function(handle);
    }
};

struct HeapDeleter {
    void operator()(void* block) const { free(block); }
};

using File = std::unique_ptr<FILE, Deleter<fclose>>;
using Directory = std::unique_ptr<DIR, Deleter<closedir>>;
template <typename Element>
using Heap = std::unique_ptr<Element, HeapDeleter>;

/// An open file descriptor, or -1.
struct Descriptor {
    int number = -1;

    Descriptor() = default;
    explicit Descriptor(int open_descriptor) : number(open_descriptor) {}
    Descriptor(Descriptor&& other) noexcept : number(other.release()) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor& operator=(Descriptor&& other) noexcept {
        if (this != &other) {
            close_now();
            number = other.release();
        }
        return *this;
    }
    ~Descriptor() { close_now(); }

    explicit operator bool() const { return number >= 0; }
    [[nodiscard]] int release() {
        int released = number;
        number = -1;
        return released;
    }

private:
    void close_now();
};

}  // namespace quorvel
