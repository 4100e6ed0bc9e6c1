#include "hw/modem_lines.h"

#include <stdio.h>
#include <sys/ioctl.h>

#include "foundation/code_table.h"

namespace quorvel {

namespace {

constexpr CodeName kLabels[] = {
    {TIOCM_DTR, "DTR"     },
    {TIOCM_RTS, "RTS"     },
    {TIOCM_ST,  "Tx "     },
    {TIOCM_SR,  "Rx "     },
    {TIOCM_CTS, "CTS"     },
    {TIOCM_CAR, "CAR(DCD)"},
    {TIOCM_RNG, "RNG(RI)" },
    {TIOCM_DSR, "DSR"     },
};

// In the order printed, with what stands behind each.
constexpr CodeName kFields[] = {
    {TIOCM_ST,  " "  },
    {TIOCM_RTS, " "  },
    {TIOCM_DTR, " <>"},
    {TIOCM_SR,  " "  },
    {TIOCM_DSR, " "  },
    {TIOCM_RNG, " "  },
    {TIOCM_CTS, " "  },
    {TIOCM_CAR, " \n"},
};

}  // namespace

void print_modem_lines(int lines) {
    for (const CodeName& field : kFields) {
        const char* label = name_of<CodeName>(kLabels, field.code, "---");
        printf("%s : %s%s", label, (lines & field.code) != 0 ? "1" : "0", field.name);
    }
}

}  // namespace quorvel
