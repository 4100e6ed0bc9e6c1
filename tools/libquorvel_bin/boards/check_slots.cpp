// The slot files: each line by itself, as the library's reader takes it.
#include <string.h>

#include "boards/findings.h"
#include "boards/naming_source.h"
#include "foundation/numbers.h"
#include "libquorvel_bin.h"

using namespace quorvel;

namespace {

struct SlotCheck {
    Findings& findings;
    const SlotFile& file;
    bool internal_rows = false, usb_rows = false;  // whether there are any above the line
};

// ---- One line ----

constexpr const char* kKeys[] = {"HDD_INTERNAL", "HDD_USB", "HDD_BOOT", "HDD_DISKNAME", "USB_DISKNAME"};

bool is_known_key(const SlotFile& file, const char* key) {
    if (file.extension) {
        int slot = 0;
        char word[16];
        if (strcmp(key, "dump_config") == 0 || contains(key, kExtensionRow)) return true;
        return sscanf(key, "EXTSLOT%1d_%15s", &slot, word) == 2 && slot >= 1 && slot <= kExtensionSlotCount &&
               (strcmp(word, "SATADISKNAME") == 0 || strcmp(word, "USBDISKNAME") == 0);
    }
    for (const char* known : kKeys) {
        if (strcmp(key, known) == 0) return true;
    }
    return false;
}

// A word makes names; without "disk" in it no name leads back, and "usb" and "bootdisk" mean other kinds of disks.
void check_word(SlotCheck& check, const SlotLine& line) {
    bool usb = contains(line.key, "USB");
    if (!contains(line.value, "disk")) {
        find(check.findings, Severity::kError, check.file.path, line.number,
             "no name with the word \"%s\" leads back to a disk; put \"disk\" into the word", line.value);
    } else if (contains(line.value, "usb") != usb || contains(line.value, "bootdisk")) {
        find(check.findings, Severity::kError, check.file.path, line.number,
             "names with the word \"%s\" are looked for among other disks; write \"usb\" in words of USB ports only",
             line.value);
    }
    if (!check.file.extension && (usb ? check.usb_rows : check.internal_rows)) {
        find(check.findings, Severity::kWarning, check.file.path, line.number,
             "the word does not hold for the rows above it; move it above them");
    }
}

void check_key(SlotCheck& check, const SlotLine& line) {
    if (!is_known_key(check.file, line.key)) {
        find(check.findings, Severity::kWarning, check.file.path, line.number,
             "no reader knows the key %s; correct or remove it", line.key);
    }
    if (contains(line.key, "DISKNAME")) check_word(check, line);
    if (strcmp(line.key, "dump_config") == 0 && strcmp(line.value, "yes") == 0) {
        find(check.findings, Severity::kWarning, check.file.path, line.number,
             "every program that asks for a disk prints the table; remove the line");
    }
}

// The fields of a line behind the kind of an extension card's.
struct Fields {
    SlotFields read;
    int first, count = 0;

    Fields(const SlotFile& file, const char* value) : read(value), first(file.extension ? 1 : 0) {
        for (; *value != '\0'; count++) {
            value += strspn(value, ",");
            if (*value == '\0') break;
            value += strcspn(value, ",");
        }
        count -= first;
    }
    const char* at(int index) const { return read.text[first + index]; }
};

int fields_of(int32_t type) {
    if (type == DISK_PATH_USB) return 4;
    return type == DISK_PATH_INTERNAL ? 3 : 2;
}

bool is_address(const char* text) {
    int end = 0;
    unsigned part;
    return sscanf(text, "%u:%u:%u:%u%n", &part, &part, &part, &part, &end) == 4 && text[end] == '\0';
}

// Numbers are read leniently, and what cannot be is taken as 0.
void check_fields(SlotCheck& check, const SlotLine& line, const struct disk_path& row) {
    Fields fields(check.file, line.value);
    if (!is_all_digits(fields.at(0))) {
        find(check.findings, Severity::kWarning, check.file.path, line.number,
             "the slot \"%s\" is read as %d; write that", fields.at(0), row.slot);
    }
    if (fields.count > fields_of(row.type)) {
        find(check.findings, Severity::kWarning, check.file.path, line.number,
             "only %d fields are read, not %d; remove the others", fields_of(row.type), fields.count);
    }
    if (row.type == DISK_PATH_INTERNAL && row.scsi_id != nullptr && strcmp(row.scsi_id, "-") != 0 &&
        !is_address(row.scsi_id)) {
        find(check.findings, Severity::kWarning, check.file.path, line.number,
             "\"%s\" is no SCSI address; write HOST:CHANNEL:TARGET:LUN, or - without one", row.scsi_id);
    }
    if (row.type == DISK_PATH_USB && row.usb_port2 != -1 && row.usb_port2 < 1) {
        find(check.findings, Severity::kError, check.file.path, line.number,
             "no disk is behind port %d of a hub; write -1 without a hub", row.usb_port2);
    }
}

void check_kind(SlotCheck& check, const SlotLine& line, const struct disk_path& row) {
    SlotFields fields(line.value);
    if (check.file.extension && row.type == DISK_PATH_INTERNAL && row.scsi_id == nullptr) {
        find(check.findings, Severity::kError, check.file.path, line.number,
             "the kind \"%s\" is none of SATA, SCSI and USB; the row has no address or word", fields.text[0]);
    }
}

// The slots that the model has.
void check_count(SlotCheck& check, const SlotLine& line, const struct disk_path& row) {
    if (row.type == DISK_PATH_BOOT || check.file.extension) return;
    bool usb = row.type == DISK_PATH_USB;
    int most = usb ? LibQuorvelBin_GetMaxUsbdiskNum() : LibQuorvelBin_GetMaxDiskNum();
    if (most > 0 && row.slot > most) {
        find(check.findings, Severity::kWarning, check.file.path, line.number,
             "slot %d is more than %s=%d of /etc/nas_feature; correct one of them", row.slot,
             usb ? "MAX_USBDISK_NUM" : "MAX_DISK_NUM", most);
    }
}

void check_path(SlotCheck& check, const SlotLine& line, const struct disk_path& row) {
    if (row.path == nullptr) return;
    if (row.type == DISK_PATH_INTERNAL && contains(row.path, "usb")) {
        find(check.findings, Severity::kError, check.file.path, line.number,
             "an internal row is never asked about disks on USB; make it HDD_USB or HDD_BOOT");
    }
    if (is_undecidable(row)) {
        find(check.findings, Severity::kError, check.file.path, line.number,
             "the row can never be decided, and programs wait for ever; end its path before \"usb\"");
    }
}

void check_row(SlotCheck& check, const SlotLine& line, const struct disk_path& row) {
    check_fields(check, line, row);
    check_kind(check, line, row);
    check_count(check, line, row);
    check_path(check, line, row);
    check.internal_rows |= row.type == DISK_PATH_INTERNAL;
    check.usb_rows |= row.type == DISK_PATH_USB;
}

struct LineCheck {
    SlotCheck& check;
    int rows = 0;
};

void check_line(void* context, const SlotLine& line, const struct disk_path* rows) {
    LineCheck& lines = *static_cast<LineCheck*>(context);
    SlotCheck& check = lines.check;
    if (line.section) return;
    if (line.key == nullptr) {
        return find(check.findings, Severity::kWarning, check.file.path, line.number,
                    "the line says nothing; write KEY=VALUE, or begin it with ;");
    }
    check_key(check, line);
    if (line.fault != SlotFault::kNone) {
        find(check.findings, Severity::kError, check.file.path, line.number,
             "%s; correct it, as the whole file counts for nothing until then", text_of_fault(line.fault));
    } else if (line.rows > lines.rows)
        check_row(check, line, rows[line.rows - 1]);
    lines.rows = line.rows;
}

}  // namespace

void check_slot_files(Findings& findings) {
    for (const SlotFile* file : {&kDiskOrderFile, &kExtensionFile}) {
        SlotCheck check = {findings, *file};
        LineCheck lines = {check};
        (void)walk_slot_file(*file, check_line, &lines);  // one that cannot be read is told as a settings file
    }
    check_rows(findings);
}
