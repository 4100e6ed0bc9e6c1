#include "support/appliance.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

extern "C" int32_t debug, from_cmdline;

namespace {

const fs::path call_logs = "/run/stand-in";

// Every place a test may write, and what was there at the start: that stays.
using Entries = std::set<fs::path>;

Entries writable_entries() {
    Entries entries;
    for (const char* place : {"/etc", "/proc", "/sys", "/dev", "/sbin", "/usr/local", "/tmp", "/var/tmp", "/var/lib",
                              "/mnt", "/root", "/run"}) {
        std::error_code missing;
        for (const auto& entry : fs::directory_iterator(place, missing))
            entries.insert(entry.path());
    }
    return entries;
}

Entries first_entries;

// What a test case opens it closes, and so does the library in it.
class DescriptorCount : public testing::EmptyTestEventListener {
    static int open_descriptors() {
        int count = 0;
        for (int descriptor = 0; descriptor < 256; descriptor++)
            count += fcntl(descriptor, F_GETFD) != -1;
        return count;
    }
    void OnTestStart(const testing::TestInfo&) override { before_ = open_descriptors(); }
    void OnTestEnd(const testing::TestInfo& info) override {
        if (const int after = open_descriptors(); after != before_)
            ADD_FAILURE_AT(info.file(), info.line())
                << after << " descriptors open after the case, " << before_ << " before";
    }
    int before_ = 0;
};

}  // namespace

void remove_tree(const std::string& path) {
    std::error_code failure;
    fs::remove_all(path, failure);
    ASSERT_FALSE(exists(path)) << path << ": " << failure.message();
}

bool exists(const std::string& path) {
    return fs::exists(fs::symlink_status(path));
}

void make_directory(const std::string& path) {
    fs::create_directories(path);
}

void write_file(const std::string& path, const std::string& text) {
    fs::create_directories(fs::path(path).parent_path());
    if (fs::is_symlink(path)) fs::remove(path);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    ASSERT_TRUE(file.write(text.data(), static_cast<std::streamsize>(text.size())).flush()) << path;
}

void make_link(const std::string& path, const std::string& target) {
    fs::create_directories(fs::path(path).parent_path());
    fs::remove(path);
    fs::create_symlink(target, path);
}

std::string read_file(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string table_file(const std::string& name) {
    return "tests/" + name + ".txt";
}

std::vector<std::vector<std::string>> table_rows(const std::string& name, size_t fields, std::vector<int>* lines) {
    constexpr std::string_view letters = "ntrv_", meanings = "\n\t\r\v ";
    std::ifstream file("/source/" + table_file(name));
    std::vector<std::vector<std::string>> rows;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (line.empty() || line[0] == '#') continue;
        if (lines != nullptr) lines->push_back(number);
        auto* field = &rows.emplace_back(1).back();
        size_t end = 0;  // of the field without the blanks behind it
        for (size_t i = 0; i < line.size(); i++) {
            if (line[i] == '|') {
                field->resize(end);
                field = &rows.back().emplace_back();
                end = 0;
            } else if (line[i] == '\\') {
                const size_t letter = letters.find(line[++i]);
                if (line[i] == 'x') {
                    *field += static_cast<char>(std::stoi(line.substr(i + 1, 2), nullptr, 16));
                    i += 2;
                } else {
                    *field += letter == letters.npos ? line[i] : meanings[letter];
                }
                end = field->size();
            } else if (line[i] != ' ' || !field->empty()) {
                *field += line[i];
                if (line[i] != ' ') end = field->size();
            }
        }
        field->resize(end);
        if (rows.back().size() != fields)
            ADD_FAILURE_AT(table_file(name).c_str(), number) << rows.back().size() << " fields instead of " << fields;
        rows.back().resize(fields);
    }
    EXPECT_FALSE(rows.empty()) << name;
    return rows;
}

void stand_in(const std::string& path, const std::string& body) {
    const fs::path log = call_logs / fs::path(path).filename();
    fs::create_directories(call_logs);
    write_file(path, "#!/bin/sh\nprintf '%s\\n' \"$*\" >>" + log.string() + "\n" + body + "\n");
    fs::permissions(path, fs::perms{0755});
}

std::vector<std::string> calls(const std::string& tool) {
    std::ifstream log(call_logs / fs::path(tool).filename());
    std::vector<std::string> lines;
    for (std::string line; std::getline(log, line);)
        lines.push_back(line);
    return lines;
}

Capture::Capture(int descriptor)
    : descriptor_(descriptor),
      saved_(fcntl(descriptor, F_DUPFD_CLOEXEC, 3)),
      file_(memfd_create("capture", MFD_CLOEXEC)) {
    fflush(nullptr);
    dup2(file_, descriptor_);
}

void Capture::restore() {
    fflush(nullptr);
    if (saved_ >= 0) {
        dup2(saved_, descriptor_);
        close(saved_);
    }
    saved_ = -1;
}

std::string Capture::text() {
    restore();
    std::string text(static_cast<size_t>(lseek(file_, 0, SEEK_END)), '\0');
    text.resize(static_cast<size_t>(pread(file_, text.data(), text.size(), 0)));
    return text;
}

Capture::~Capture() {
    restore();
    close(file_);
}

void ApplianceTest::SetUp() {
    for (const auto& path : writable_entries()) {
        if (!first_entries.contains(path)) remove_tree(path);
        if (HasFatalFailure()) return;
    }
    debug = from_cmdline = 0;
}

int main(int argc, char** argv) {
    if (!exists("/.disposable-root")) {
        fprintf(stderr, "%s writes /etc, /proc and /sys: start it with tests/run-in-root\n", argv[0]);
        return 2;
    }
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new DescriptorCount);
    first_entries = writable_entries();
    return RUN_ALL_TESTS();
}
