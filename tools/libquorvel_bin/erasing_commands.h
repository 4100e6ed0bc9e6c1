// The commands that erase a disk, behind a look at what it is and who uses it.
#pragma once

int run_create_partition(int argc, char** argv);
int run_create_short_partition(int argc, char** argv);
int run_create_usb_partition(int argc, char** argv);
