// Faults of the system: this program's own open, read, pwrite, ... which the library calls.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

enum class Call { kOpen, kRead, kWrite, kTruncate, kClose };

// Asked before each call that the library makes on a state file. It may shorten `size`; a result
// other than 0 is the errno to fail with. Empty: nothing is meddled with.
extern std::function<int(Call call, std::size_t& size)> meddle;

// What the library's shell commands do and return; empty: nothing, 0. Their directory /mnt/ramdisk
// is the working directory of this program.
extern std::function<int(const std::string& command)> shell;
