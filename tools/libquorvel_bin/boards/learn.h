// The ways to learn which disk is in which bay. Each fills a proposal and says on standard error what it cannot use.
#pragma once

#include "boards/proposal.h"

/// The highest number of a bay that is asked for, read or believed.
constexpr int kMostBay = 999;

struct LearnOptions {
    const char* serials = nullptr;  // file with lines "BAY SERIAL"
    bool from_kernel = false, blink = false, yes = false;
    int bays = -1, ports = -1;  // to be asked for; -1 as the feature settings say
    int wait = 10;              // seconds for a disk to come, and for reading from one
};

/// Lines "BAY SERIAL": 3, disk3, usbdisk1 or bootdisk1, and the serial number as the kernel has it.
[[nodiscard]] bool learn_by_serials(Proposal& proposal, const AllDisks& all, const char* path);

/// What the kernel itself tells: slots of enclosures and of PCI hot-plug, numbers of ATA ports.
[[nodiscard]] bool learn_from_kernel(Proposal& proposal, const AllDisks& all);

/// The person puts a disk into, or pulls it out of, each bay.
[[nodiscard]] bool learn_by_plugging(Proposal& proposal, const LearnOptions& options);

/// Reads from each disk, so that the person sees whose light works.
[[nodiscard]] bool learn_by_blinking(Proposal& proposal, const AllDisks& all, const LearnOptions& options);

/// "3", "disk3", "usbdisk1" or "bootdisk1"; false for another text.
[[nodiscard]] bool read_bay(const char* text, int32_t& type, int& slot);
