// The probes of free memory and storage: each runs a command of the platform, leaves its output in
// a file on the RAM disk and takes one number from it.
#pragma once

#include <cstdint>

// Exported. Protected: the library calls its own, also in a host that has functions of these names.
#define SCANBLOCKS_PROBE extern "C" __attribute__((visibility("protected"))) std::int32_t

// The figure in KiB, saturating at 2147483647 (2 TiB), or a result below 0.
SCANBLOCKS_PROBE ReadFreeRAM(void);
SCANBLOCKS_PROBE ReadFreeSD(void);

namespace scanblocks {

inline constexpr std::int32_t kNoOutput = -1;  // no output, or 1024 bytes of it or more
inline constexpr std::int32_t kNoLine = -2;    // the output lacks the line that was looked for

struct Probe {
  const char* file;
  const char* remove;   // shell command that removes the file
  const char* measure;  // shell command that appends its output to the file
};

// Runs both commands and fills `text`, NUL-terminated. False is kNoOutput.
inline constexpr int kMaxOutput = 1024;
bool run(const Probe& probe, char (&text)[kMaxOutput + 1]);

// The third of the decimal numbers that follow the first occurrence of `name` anywhere in the text,
// separated by white space or nothing. 0 where there are fewer than three; kNoLine without `name`.
std::int32_t third_number_after(const char* name, const char* text);

}  // namespace scanblocks
