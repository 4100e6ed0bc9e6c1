// Files enciphered with the hardware address of an interface.
#pragma once

/// encrypt_mac_file INTERFACE FILE: enciphers in place, and looks whether that took place.
[[nodiscard]] int run_encrypt_mac_file(int argc, char** argv);

/// decrypt_mac_file INTERFACE FILE: prints a file that is enciphered.
[[nodiscard]] int run_decrypt_mac_file(int argc, char** argv);
