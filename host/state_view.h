// State files in readable form: what the catalogue knows of each key, and what is wrong with a
// file.
#pragma once

#include <string>
#include <vector>

#include "frame/field.h"
#include "host/time.h"

namespace scanhost {

// The parts of a file name BLOCK_GROUP_INSTANCE.dat. The group ends at the first "_" behind the
// block's name; `note` says so where the name has more of them.
struct StateFileName {
  std::string type{};
  std::string group{};
  std::string instance{};
  std::string note{};
  const scanblocks::BlockInfo* block = nullptr;  // nullptr: the catalogue has none of that name
};
StateFileName parse_state_name(const std::string& path);

struct StateView {
  struct Record {
    const scanblocks::Field* field;  // nullptr for a key that the block does not have
    std::string key;
    std::string value;
    std::string reading;  // a state by name, a stamp as date and age; empty: nothing to add
    double stamp = 0;     // a stamp in seconds since 1970; 0: none
  };
  std::string path{};
  StateFileName name{};
  std::vector<Record> records{};
  std::vector<std::string> damage{};
};

// The files "*.dat" in a directory, sorted; a path that is no directory is the file itself.
// Throws Failure if there is nothing there.
std::vector<std::string> state_files(const std::string& path);

// Stamps that hold the low 32 bits of the time in milliseconds are taken as the time nearest to
// `now`. Throws Failure if the file cannot be read.
StateView read_state(const std::string& path, Time now);

// Writes "KEY=VALUE" into the file with one write in place; gives the value as it was written.
// A state may be given by name, a stamp as ISO 8601 or "now". Throws Rejection if the key or value
// does not fit, and Failure if a host holds the directory or the file cannot be written.
std::string write_state(const std::string& path, const std::string& assignment, Time now);

}  // namespace scanhost
