// Which platform a set of facts makes, and the series name.
#include "quorvel/foundation.h"
#include "quorvel/platform.h"
#include "support/appliance.h"

namespace {

class Identity : public ApplianceTest {};

struct Machine {
    const char* what;
    bool borel;
    std::vector<std::string> pci;
    const char* product;
    bool nisk, pellmar;
    int platform;
    const char* name;
};

// clang-format off
const Machine machines[] = {
    {"nothing known",               false, {},                                   "",                             false, false, 4, nullptr    },
    {"borel comes first",           true,  {"1b4b9485", "1b4b9125"},             "",                             true,  false, 0, "borel"    },
    {"9480 and 9125",               false, {"1b4b9480", "1b4b9125"},             "",                             true,  false, 1, "nisk"     },
    {"9485 and 9125",               false, {"1b4b9125", "1b4b9485"},             "",                             true,  false, 1, "nisk"     },
    {"9485 and 9120",               false, {"1b4b9485", "1b4b9120"},             "",                             true,  false, 1, "nisk"     },
    {"9480 and 9120 are no pair",   false, {"1b4b9480", "1b4b9120"},             "",                             false, false, 4, nullptr    },
    {"nisk before pellmar",         false, {"11ab6440", "1b4b9485", "1b4b9125"}, "",                             true,  true,  1, "nisk"     },
    {"pellmar has nisk's name",     false, {"11ab6440", "1b4b9480"},             "PRODUCT_SERIES=\"KT720\"\n",   false, true,  2, "nisk"     },
    {"armada, longer value",        false, {},                                   "PRODUCT_SERIES=\"KT720\"-b\n", false, false, 3, "armada370"},
    {"armada needs the quotes",     false, {},                                   "PRODUCT_SERIES=KT720\n",       false, false, 4, nullptr    },
};
// clang-format on

void write_pci_list(const std::vector<std::string>& ids) {
    std::string text = "0000\t8086b10b\t0\tfebb1b4b\t           1b4\n";
    for (const std::string& id : ids)
        text += "0100\t" + id + "\t1b\t               b\tahci\n";
    write_file("/proc/bus/pci/devices", text);
}

TEST_F(Identity, PlatformOfMachine) {
    for (const Machine& machine : machines) {
        SCOPED_TRACE(machine.what);
        SetUp();
        if (machine.borel) make_directory("/sys/class/borel");
        if (!machine.pci.empty()) write_pci_list(machine.pci);
        write_file("/etc/nas_feature", machine.product);
        EXPECT_EQ(LibQuorvelBin_GetPlatform(), machine.platform);
        EXPECT_EQ(LibQuorvelBin_IsNiskPlatform12Bay(), machine.nisk);
        EXPECT_EQ(LibQuorvelBin_IsPellmarPlatform12Bay(), machine.pellmar);

        char name[8] = "xxxxxxx";
        from_cmdline = 1;
        char* result = nullptr;
        std::string printed = printed_by([&] { result = LibQuorvelBin_GetPlatformStr(name, sizeof name); });
        EXPECT_EQ(result, machine.name != nullptr ? name : nullptr);
        std::string expected = machine.name != nullptr ? machine.name : "";
        EXPECT_EQ(printed, expected.empty() ? "" : expected.substr(0, 7) + "\n");
    }
}

TEST_F(Identity, ChipIsFoundAnywhereInALine) {
    EXPECT_EQ(LibQuorvelbin_Has7042ExtentionChip(), 0);
    write_file("/proc/bus/pci/devices", "0100\t8086\n0200 x11ab7042x");
    EXPECT_EQ(LibQuorvelbin_Has7042ExtentionChip(), 1);
    EXPECT_EQ(LibQuorvelbin_HasSomeExtentionChip("8086x"), 0);
    // A piece of a line ends after 1023 characters; what straddles its end is in neither piece.
    write_file("/proc/bus/pci/devices", std::string(1020, ' ') + "11ab7042\n");
    EXPECT_EQ(LibQuorvelbin_Has7042ExtentionChip(), 0);
    write_file("/proc/bus/pci/devices", "11ab644");
    EXPECT_EQ(LibQuorvelBin_IsPellmarPlatform12Bay(), 0) << "an id cut short by the end of the list";
}

TEST_F(Identity, SeriesNameLosesItsQuotes) {
    struct Row {
        const char* stored;
        size_t size;
        const char* name;  // null: none
    };
    // Of the stored value, quotes included, 31 characters count.
    // clang-format off
    const Row rows[] = {
        {"SERIES_NAME=\"Ostrand\"\n", 8,  "Ostrand"},
        {"SERIES_NAME=\"Ostrand\"\n", 7,  nullptr  },
        {"SERIES_NAME=Plain\n",       32, "Plain"  },
        {"SERIES_NAME=\"\"\n",        32, nullptr  },
        {"SERIES_NAME=\n",            32, nullptr  },
        {"OTHER=\"Ostrand\"\n",       32, nullptr  },
        {"SERIES_NAME=\"0123456789abcdefghijklmnopqrstuvwxyz\"\n", 32, "0123456789abcdefghijklmnopqrst"},
    };
    // clang-format on
    for (const Row& row : rows) {
        SCOPED_TRACE(row.stored);
        write_file("/etc/nas_feature", row.stored);
        char name[33] = "before";
        EXPECT_EQ(LibQuorvelBin_GetSeriesName(name, row.size), row.name != nullptr ? name : nullptr);
        EXPECT_STREQ(name, row.name != nullptr ? row.name : "before");
    }
}

}  // namespace
