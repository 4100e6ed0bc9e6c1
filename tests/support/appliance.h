// The appliance a test writes for itself, file by file, inside the disposable root.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

// Files and links; parent directories are created, an existing entry is replaced.
void write_file(const std::string& path, const std::string& text);
void make_link(const std::string& path, const std::string& target);
void make_directory(const std::string& path);
std::string read_file(const std::string& path);  // empty for a missing file
bool exists(const std::string& path);            // a dangling link exists too
void remove_tree(const std::string& path);

// Puts a shell script in a tool's place. Every run of it is logged before the body runs.
void stand_in(const std::string& path, const std::string& body = "");

// The argument lines with which a stand-in was run, in order: calls("/sbin/mdadm") or calls("mdadm").
std::vector<std::string> calls(const std::string& tool);

// The name by which the C library's ioctl is called, for a stand-in of it: with 64-bit times on a 32-bit machine it is
// another one.
#if defined __USE_TIME_BITS64 && __TIMESIZE == 32
#define IOCTL_SYMBOL "__ioctl_time64"
#else
#define IOCTL_SYMBOL "ioctl"
#endif

// Catches what this process and its children write to a descriptor, from construction to text().
class Capture {
public:
    explicit Capture(int descriptor = 1);
    ~Capture();
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;
    std::string text();

private:
    void restore();
    int descriptor_, saved_, file_;
};

// What an action writes to standard output.
template <typename Action>
std::string printed_by(Action&& action) {
    Capture output;
    action();
    return output.text();
}

// The cases of a text file beside the tests, a line each: fields between "|", blanks around them left out. In a field
// "\n", "\t", "\r", "\v" and "\x" with two digits are as in C, "\_" is a blank that stays; a line with "#" in front is
// a comment.
// Of each row, lines tells where it stands.
std::string table_file(const std::string& name);
std::vector<std::vector<std::string>> table_rows(const std::string& name, size_t fields,
                                                 std::vector<int>* lines = nullptr);
template <size_t N>
std::vector<std::array<std::string, N>> table(const std::string& name) {
    std::vector<std::array<std::string, N>> rows;
    for (const auto& row : table_rows(name, N))
        std::copy_n(row.begin(), N, rows.emplace_back().begin());
    return rows;
}

// An empty appliance for every test: all that an earlier one wrote is gone, the library's globals are as at load.
class ApplianceTest : public testing::Test {
protected:
    void SetUp() override;
};
