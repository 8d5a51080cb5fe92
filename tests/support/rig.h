// A block on the bench: its pins by name, its state file as text, and traces as tables.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "exports/catalogue.h"
#include "frame/pin.h"
#include "tests/support/clock.h"
#include "tests/support/record.h"

using Values = std::vector<std::pair<std::string, double>>;

// The address of an exported name of the built library, nullptr where there is none.
void* exported(const char* name);

// "2026-03-29T00:58:00" in seconds since 1970.
double utc(const std::string& text);

// Sets TZ; without one of these the tests run in the machine's zone.
class TimeZone {
 public:
  explicit TimeZone(const char* zone);
  ~TimeZone();
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
};

// A directory that is removed at the end.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// One instance of a block, called through its exported name, in a state directory of its own.
class Rig {
 public:
  static constexpr std::size_t kPins = 32;

  explicit Rig(const std::string& block, const Values& inputs = {});

  void set(const std::string& input, double value);
  void set_text(int pin, const std::string& text);  // padded with NUL, cut at 64
  void call();
  void call_at(double seconds);  // seconds since 1970
  double out(const std::string& output) const;

  // The state file. Values of records are texts as stored; "" for a key that is not there.
  std::filesystem::path file() const;
  std::string bytes() const;
  Records records() const;
  // Whether the file is exactly the records of the block, each with a value and padded with zeros.
  bool has_own_records() const;
  std::string state(const std::string& key) const;
  void write_bytes(const std::string& bytes) const;
  void write_records(const Records& records) const { write_bytes(image(records)); }

  const scanblocks::BlockInfo& info() const { return *info_; }
  const std::filesystem::path& directory() const { return directory_.path(); }

  Pin in_pins[kPins] = {};
  Pin out_pins[kPins] = {};

 private:
  const scanblocks::BlockInfo* info_;
  void (*function_)(const Pin*, Pin*);
  TemporaryDirectory directory_;
};

// Names the tests over the catalogue.
inline std::string block_name(const testing::TestParamInfo<const scanblocks::BlockInfo*>& info) {
  return info.param->name;
}

// Calls the block once per row and compares. A table:
//
//   t    Enable InSignal | AlmQ #clock | TmpTime State
//   0      1      1      |  0     1    |  100     2      the rest of a row is a comment
//
// t is in seconds from kTraceStart; a column utc takes its place with times such as
// 2026-03-29T00:58:00. Inputs stay as they are where a row has "-"; an output or key
// with "-" is not compared. State keys are compared as texts, outputs as numbers ("nan" and "inf"
// included), or bit by bit with a pattern such as #7FF0000000000001. An input column "Key=" is a
// record: a row that gives any has the call find a file of just these. "#step" is by how many
// seconds each reading moves the clock on, "#clock" how many readings the call made.
inline constexpr double kTraceStart = 1700000000;
void trace(Rig& rig, const std::string& table);
void trace(const std::string& block, const Values& inputs, const std::string& table);
