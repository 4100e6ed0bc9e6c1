// Changing a feature setting: the firmware's own tools keep the store that /etc/nas_feature is made from.
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/replacement.h"
#include "foundation/shell.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

using Command = Text<kCommandSize>;

constexpr size_t kLargestFeatureFile = 1 << 20;

// The feature file as it was, so that a tool that fails in the middle of writing it takes nothing away.
struct Kept {
    Heap<char> content;
    size_t size = 0;

    std::string_view view() const { return {content.get(), size}; }
};

Kept read_features() {
    Kept kept;
    Descriptor file = open_for_reading(files::kFeature);
    kept.content.reset(static_cast<char*>(malloc(kLargestFeatureFile)));
    if (!file || !kept.content) return kept;
    ssize_t count = read_fully(file.number, kept.content.get(), kLargestFeatureFile);
    kept.size = count > 0 ? static_cast<size_t>(count) : 0;
    return kept;
}

bool holds_setting(const Kept& features) {
    return features.view().find('=') != std::string_view::npos;
}

// The shell would make the file with whatever rights the caller's mask leaves.
void make_feature_file() {
    (void)open_or_create(files::kFeature, S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH);
}

int report_missing_dumpnf() {
    puts("This system looks like don't support dumpnf command.");
    puts("Warn! : setnf command was found, but dumpnf command is not found!");
    puts("        maybe need to restart to reflect this change!");
    return 0;
}

void dump_features() {
    Kept before = read_features();
    make_feature_file();
    int status = run_command(Command("%s > %s", files::kDumpFeatureTool, files::kFeature));
    if (status == 0 && holds_setting(read_features())) return;
    if (holds_setting(before)) (void)replace_file(files::kFeature, before.view());
}

[[nodiscard]] int change_by_setnf(const char* key, const char* value) {
    Command set("%s %s %s", files::kSetFeatureTool, key, value);
    if (set.cut) return fail(E2BIG);
    HeldSignals held;
    (void)run_command(set);
    if (!path_exists(files::kDumpFeatureTool)) return report_missing_dumpnf();
    dump_features();
    return 0;
}

// What is appended must not be joined to a last line without an end.
void end_last_line() {
    Descriptor file = open_for_update(files::kFeature);
    off_t end = file ? lseek(file.number, -1, SEEK_END) : -1;
    char last;
    if (end >= 0 && read(file.number, &last, 1) == 1 && last != '\n') (void)write_fully(file.number, "\n", 1);
}

// The line is only appended: readers keep the first, old line until the firmware makes the file anew.
[[nodiscard]] int change_by_nvram(const char* key, const char* value) {
    Command set("%s -c set %s %s", files::kNvramTool, key, value);
    Command append("echo %s=%s >> %s", key, value, files::kFeature);
    if (set.cut || append.cut) return fail(E2BIG);
    HeldSignals held;
    (void)run_command(set);
    make_feature_file();
    end_last_line();
    (void)run_command(append);
    puts("Warn! : Easily reflected to nas_feature.");
    puts("        You need to check by restart process to reflect this change!");
    return 0;
}

}  // namespace

int LibQuorvelBin_SetConfValInString(const char* key, const char* value) {
    if (key == nullptr || value == nullptr) return fail(EINVAL);
    if (path_exists(files::kSetFeatureTool)) return change_by_setnf(key, value);
    puts("This system looks like don't support setnf command.");
    if (path_exists(files::kNvramTool)) return change_by_nvram(key, value);
    puts("This system looks like don't support nvram command.");
    printf("%s : set feature failed!\n", __func__);
    return fail(ENOPKG);
}
