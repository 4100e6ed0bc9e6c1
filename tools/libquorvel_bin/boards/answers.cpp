#include "boards/answers.h"

#include <string.h>

#include "boards/reasons.h"
#include "libquorvel_bin.h"

using namespace quorvel;

namespace {

Search search(const struct disk_path* rows, const DiskPlace& disk) {
    Search result;
    if (rows == nullptr) return result;
    int row = find_row(rows, disk, [&result] {
        result.undecided = true;
        return false;
    });
    result.found = rows[row].type != DISK_PATH_END;
    result.looked_at = result.found ? row + 1 : row;
    // The search ends at the row that it cannot decide.
    for (int i = 0; result.undecided && i < row; i++) {
        if (fit_of_row(rows[i], disk) != Fit::kUndecided) continue;
        result.looked_at = i + 1;
        break;
    }
    return result;
}

const NamedTable* table_at(const NamingSource& source, int index) {
    return index == 0 ? &source.table : &source.extension;
}

void name_by_tables(const NamingSource& source, const DiskPlace& disk, Answer& answer) {
    for (int i = 0; i < 2; i++) {
        const struct disk_path* rows = table_at(source, i)->rows;
        answer.searches[i] = search(rows, disk);
        if (answer.searches[i].undecided) return;
        if (!answer.searches[i].found) continue;
        answer.name.add(name_of_row(rows[answer.searches[i].looked_at - 1]).c_str());
        return;
    }
}

}  // namespace

Answer answer_for(const NamingSource& source, const BlockDisk& disk) {
    Answer answer;
    char text[256] = "";
    if (source.table.rows != nullptr) {
        name_by_tables(source, disk.place(), answer);
    } else if (LibQuorvelBin_GetDisknameFromDevname(disk.name.c_str(), text, sizeof text) == 0) {
        answer.name.add(text);
    }
    char back[256] = "";
    if (answer.name.length > 0 && LibQuorvelBin_GetDevnameFromDiskname(answer.name.c_str(), back, sizeof back) == 0)
        answer.back.add(back);
    answer.agrees = answer.name.length > 0 && strcmp(answer.back.c_str(), disk.name.c_str()) == 0;
    return answer;
}
