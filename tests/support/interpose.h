// Faults of the system: this program's own open, read, pwrite, ... which the library calls.
#pragma once

#include <cstddef>
#include <functional>

enum class Call { kOpen, kRead, kWrite, kTruncate, kClose };

// Asked before each call that the library makes on a state file. It may shorten `size`; a result
// other than 0 is the errno to fail with. Empty: nothing is meddled with.
extern std::function<int(Call call, std::size_t& size)> meddle;
