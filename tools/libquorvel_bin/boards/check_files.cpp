// Settings files as such: their lines and their end. Programs that answers need; arrays that the inventory cannot read.
#include <errno.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "boards/findings.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/text.h"
#include "libquorvel_bin.h"

using namespace quorvel;

namespace {

// ---- Settings files ----

// The longest line that readers and the writer take whole, without its line feed; 0 where nobody writes.
struct SettingsFile {
    const char* path;
    size_t reader, writer;
};

constexpr SettingsFile kSettingsFiles[] = {
    {"/etc/nas_feature",         510, 254},
    {"/etc/tevra/info",          510, 254},
    {"/etc/tevra/diskinfo",      510, 254},
    {"/etc/diskpath.conf",       510, 0  },
    {"/etc/extslot.conf",        510, 0  },
    {"/etc/libquorvel_bin.conf", 510, 0  },
};

void check_length(Findings& findings, const SettingsFile& file, int number, size_t length) {
    if (length > file.reader) {
        find(findings, Severity::kError, file.path, number,
             "%zu characters: what stands behind the first %zu is read as another line; shorten it", length,
             file.reader);
    } else if (file.writer > 0 && length > file.writer) {
        find(findings, Severity::kWarning, file.path, number,
             "%zu characters: a program that changes the file takes %zu at once; shorten it", length, file.writer);
    }
}

void check_content(Findings& findings, const SettingsFile& file, int descriptor) {
    constexpr size_t kPiece = 4096;
    LineReader reader(descriptor, kPiece);
    int number = 1;
    size_t length = 0, total = 0;
    int zeros = 0;  // the first line with one
    bool ended = true;
    for (std::string_view piece; !(piece = next_piece(reader)).empty();) {
        ended = piece.back() == '\n';
        length += piece.size() - (ended ? 1 : 0);
        total += piece.size();
        if (zeros == 0 && piece.find('\0') != std::string_view::npos) zeros = number;
        if (!ended) continue;
        check_length(findings, file, number++, length);
        length = 0;
    }
    if (length > 0) check_length(findings, file, number, length);
    if (total == 0) find(findings, Severity::kError, file.path, 1, "the file is empty; restore it");
    if (zeros > 0) find(findings, Severity::kError, file.path, zeros, "zero bytes in the file; restore it");
    if (!ended) {
        find(findings, Severity::kWarning, file.path, number,
             "no line feed at the end: a line that is added becomes part of the last one; add one");
    }
}

// ---- Programs ----

struct Program {
    const char* path;     // or a name, looked for where the shell does
    const char* feature;  // the answers are only asked for where it is on; null for always
    const char* answers;
};

constexpr Program kPrograms[] = {
    {"/sbin/mdadm",                "SUPPORT_RAID", "md mdinfo, md diskinfo"                         },
    {"/usr/local/sbin/frontctl",   nullptr,        "powered, md diskinfo"                           },
    {"/usr/local/sbin/smartctl",   nullptr,        "temperature"                                    },
    {"/usr/local/ssl/bin/openssl", nullptr,        "encrypt_mac_file, decrypt_mac_file"             },
    {"parted",                     nullptr,        "create_partition, create_usb_partition"         },
    {"fdisk",                      nullptr,        "create_usb_partition"                           },
    {"iptables",                   nullptr,        "firewall"                                       },
    {"nslookup",                   nullptr,        "dns_reachable"                                  },
    {"mv",                         nullptr,        "config write, config delete, every other change"},
};

bool is_program(const char* path) {
    struct stat status;
    return stat(path, &status) == 0 && S_ISREG(status.st_mode) && access(path, X_OK) == 0;
}

bool is_on_path(const char* name) {
    const char* path = getenv("PATH");
    while (path != nullptr && *path != '\0') {
        size_t length = strcspn(path, ":");
        if (is_program(Text<1024>("%.*s/%s", static_cast<int>(length), path, name).c_str())) return true;
        path += length + (path[length] == ':' ? 1 : 0);
    }
    return false;
}

// ---- Arrays ----

// A line of an attribute of an array; empty when it is none.
struct ArrayAttribute {
    char text[64];

    ArrayAttribute(const char* array, const char* name) {
        (void)read_first_line(Text<384>("/sys/block/%s/md/%s", array, name).c_str(), text, sizeof text);
    }
};

bool is_read_level(const char* level) {
    for (const char* known : {"", "raid0", "raid1", "raid5", "raid6"}) {
        if (strcmp(level, known) == 0) return true;
    }
    return false;
}

void check_array(Findings& findings, const char* array) {
    ArrayAttribute version(array, "metadata_version"), level(array, "level");
    Text<384> file("/sys/block/%s/md/%s", array, "metadata_version");
    if (version.text[0] != '\0' && strcmp(version.text, "0.90") != 0) {
        find(findings, Severity::kWarning, file.c_str(), 1,
             "metadata %s: the inventory reads 0.90 only and lists the disks of %s without an array; make it with "
             "mdadm --metadata=0.90",
             version.text, array);
    }
    if (!is_read_level(level.text)) {
        find(findings, Severity::kWarning, Text<384>("/sys/block/%s/md/level", array).c_str(), 1,
             "the inventory has no number for %s and lists %s without a level; use raid0, raid1, raid5 or raid6",
             level.text, array);
    }
}

}  // namespace

void check_settings_files(Findings& findings) {
    for (const SettingsFile& file : kSettingsFiles) {
        mode_t type = 0;
        Descriptor opened = open_for_reading(file.path, type);
        const int reason = errno;
        if (opened && type == S_IFREG) check_content(findings, file, opened.number);
        if (type != 0 && type != S_IFREG) {
            find(findings, Severity::kError, file.path, 0, "no regular file; put one there");
        } else if (!opened && reason != ENOENT) {
            find(findings, Severity::kError, file.path, 0,
                 "not readable (%s); mend that, as it says nothing until then", strerror(reason));
        }
    }
}

void check_programs(Findings& findings) {
    for (const Program& program : kPrograms) {
        if (program.feature != nullptr && LibQuorvelBin_GetConfOnOffValInIntByKey(program.feature) != 1) continue;
        bool there = program.path[0] == '/' ? is_program(program.path) : is_on_path(program.path);
        if (!there) {
            find(findings, Severity::kWarning, program.path, 0, "not there, so these fail: %s; install it",
                 program.answers);
        }
    }
}

void check_arrays(Findings& findings) {
    Directory blocks = open_directory("/sys/block");
    while (const struct dirent* entry = blocks ? readdir(blocks.get()) : nullptr) {
        if (starts_with(entry->d_name, "md")) check_array(findings, entry->d_name);
    }
}
