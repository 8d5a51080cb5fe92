// The commands of scanhost, one per file. Each returns the exit status 0 (done) or 1 (it ran and
// something failed); it throws Rejection or Failure.
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "host/figures.h"
#include "host/time.h"

namespace scanhost {

struct ScanOptions {
  std::string program;
  std::string library;                  // empty: look for it
  std::string trace;                    // empty: as the program says
  std::optional<std::uint64_t> cycles;  // at most one of these two is set
  std::optional<Duration> length;
  std::string state;  // directory in place of the program's, or of a temporary one; empty: none
  bool stats = false;
  std::string stats_json;  // path; empty: none
};

struct SimulateOptions : ScanOptions {
  std::optional<Time> start;
  bool write_outputs = false;
};

struct TestOptions : ScanOptions {
  std::optional<Time> start;
  std::string junit;  // path; empty: none
};

struct ReplayOptions : ScanOptions {
  std::string recording;  // CSV
  double tolerance = 0.0;
};

struct BlocksOptions {
  std::string name;  // empty: all
  bool markdown = false;
  bool json = false;
};

struct StateOptions {
  std::vector<std::string> paths;  // files, or directories of state files
  std::string file;                // of set
  std::string assignment;          // of set: KEY=VALUE
  bool brief = false;              // one line for each file
  bool json = false;
  bool verify = false;      // damage gives 1
  bool yes = false;         // of reset
  std::optional<Time> now;  // ages are seen from here; default: the present
};

int run(const ScanOptions& options);
int simulate(const SimulateOptions& options);
int test(const TestOptions& options);
int replay(const ReplayOptions& options);
int check(const ScanOptions& options);
int blocks(const BlocksOptions& options);
int state_show(const StateOptions& options);
int state_set(const StateOptions& options);
int state_reset(const StateOptions& options);

// Prints the figures to `stream` and writes them as JSON, as the options ask. Throws Failure if the
// file cannot be written.
void report_figures(const Figures& figures, const Program& program, const ScanOptions& options,
                    std::FILE* stream);

// Before the scan begins: throws Rejection if the trace or the figures would overwrite what the
// program reads, Failure if the figures could not be written.
void check_files(const Program& program, const ScanOptions& options, const std::string& trace);

// Where the recorded values with a date begin; nothing if none have one.
std::optional<Time> recorded_start(const Program& program);

// The number of scans that the options ask for; 0 if they ask for none.
std::uint64_t scans_of(const ScanOptions& options, Duration period);

}  // namespace scanhost
