// Which platform a set of facts makes, and the series name.
#include <sstream>

#include "quorvel/foundation.h"
#include "quorvel/platform.h"
#include "support/appliance.h"

namespace {

class Identity : public ApplianceTest {};

void write_pci_list(const std::string& ids) {
    std::string text = "0000\t8086b10b\t0\tfebb1b4b\t           1b4\n";
    std::istringstream words(ids);
    for (std::string id; words >> id;)
        text += "0100\t" + id + "\t1b\t               b\tahci\n";
    write_file("/proc/bus/pci/devices", text);
}

// A directory with "/" at its end, or PATH=TEXT.
void make_path(const std::string& path) {
    const size_t end = path.find('=');
    if (path.ends_with('/'))
        make_directory(path);
    else
        write_file(path.substr(0, end), path.substr(end + 1));
}

TEST_F(Identity, PlatformOfMachine) {
    for (const auto& [what, path, chips, bays, number, series] : table<6>("platform/expected/machines")) {
        SCOPED_TRACE(what);
        SetUp();
        if (!path.empty()) make_path(path);
        if (!chips.empty()) write_pci_list(chips);
        EXPECT_EQ(LibQuorvelBin_GetPlatform(), std::stoi(number));
        EXPECT_EQ(LibQuorvelBin_IsBorelPlatform(), number == "0");
        EXPECT_EQ(LibQuorvelBin_IsArmada370(), path.find("\"KT720\"") != path.npos);
        EXPECT_EQ(LibQuorvelBin_IsNiskPlatform12Bay(), bays.find("nisk") != bays.npos);
        EXPECT_EQ(LibQuorvelBin_IsPellmarPlatform12Bay(), bays.find("pellmar") != bays.npos);

        char name[8] = "xxxxxxx";
        from_cmdline = 1;
        char* result = nullptr;
        const auto printed = printed_by([&] { result = LibQuorvelBin_GetPlatformStr(name, sizeof name); });
        EXPECT_EQ(result, series.empty() ? nullptr : name);
        EXPECT_EQ(printed, series.empty() ? "" : series.substr(0, 7) + "\n");
        name[0] = 'x';
        LibQuorvelBin_GetPlatformStr(name, 0);
        EXPECT_EQ(name[0], 'x');
    }
}

TEST_F(Identity, NamesOfPlatforms) {
    std::string names;
    for (const auto& [number, name] : platform_num2str)
        names += std::to_string(number) + (name != nullptr ? name : ".");
    EXPECT_EQ(names, "0borel1nisk2nisk3armada3704.");
}

TEST_F(Identity, ChipIsFoundAnywhereInALine) {
    EXPECT_EQ(LibQuorvelbin_Has7042ExtentionChip(), 0);
    write_file("/proc/bus/pci/devices", "0100\t8086\n0200 x11ab7042x");
    EXPECT_EQ(LibQuorvelbin_Has7042ExtentionChip(), 1);
    EXPECT_EQ(LibQuorvelbin_HasSomeExtentionChip("8086x"), 0);
    // A piece of a line ends after 1023 characters; what straddles its end is in neither piece.
    for (size_t in_front : {1015u, 1016u}) {
        write_file("/proc/bus/pci/devices", std::string(in_front, ' ') + "11ab7042\n");
        EXPECT_EQ(LibQuorvelbin_Has7042ExtentionChip(), in_front == 1015);
    }
    write_file("/proc/bus/pci/devices", "11ab644");
    EXPECT_EQ(LibQuorvelBin_IsPellmarPlatform12Bay(), 0) << "an id cut short by the end of the list";
    write_file("/proc/bus/pci/devices",
               "\377\377\377\377\377\377\377\377"
               "11ab6440");
    EXPECT_EQ(LibQuorvelBin_IsPellmarPlatform12Bay(), 1);
}

TEST_F(Identity, SeriesNameLosesItsQuotes) {
    // Of the stored value, quotes included, 31 characters count.
    for (const auto& [stored, size, series] : table<3>("platform/expected/series-names")) {
        write_file("/etc/nas_feature", stored);
        char name[33] = "before";
        const bool none = series == "none";
        EXPECT_EQ(LibQuorvelBin_GetSeriesName(name, std::stoul(size)), none ? nullptr : name) << stored;
        EXPECT_EQ(name, none ? "before" : series) << stored;
    }
}

}  // namespace
