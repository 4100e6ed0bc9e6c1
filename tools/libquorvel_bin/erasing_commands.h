// The commands that erase a disk, behind a look at what it is and who uses it.
#pragma once

[[nodiscard]] int run_create_partition(int argc, char** argv);
[[nodiscard]] int run_create_short_partition(int argc, char** argv);
[[nodiscard]] int run_create_usb_partition(int argc, char** argv);
