// The commands of scanhost, one per file. Each returns the exit status 0 (done) or 1 (it ran and
// something failed); it throws Rejection or Failure.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/time.h"

namespace scanhost {

struct ScanOptions {
  std::string program;
  std::string library;                  // empty: look for it
  std::string trace;                    // empty: as the program says
  std::optional<std::uint64_t> cycles;  // at most one of these two is set
  std::optional<Duration> length;
};

struct SimulateOptions : ScanOptions {
  std::optional<Time> start;
  std::string state;  // empty: a temporary one
  bool write_outputs = false;
};

struct BlocksOptions {
  std::string name;  // empty: all
  bool markdown = false;
};

int run(const ScanOptions& options);
int simulate(const SimulateOptions& options);
int check(const ScanOptions& options);
int blocks(const BlocksOptions& options);

// The number of scans that the options ask for; 0 if they ask for none.
std::uint64_t scans_of(const ScanOptions& options, Duration period);

}  // namespace scanhost
