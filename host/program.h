// A control program, read and checked: every name resolved, every limit kept.
//
//   read_program.cpp   reads the file, table by table
//   wiring.h           resolves the texts of wires
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/block_type.h"
#include "host/csv.h"
#include "host/problems.h"
#include "host/time.h"

namespace scanhost {

// Where a wire takes its value from.
struct Source {
  enum class Kind {
    kSignal,    // the value of signals[index]
    kSignalOk,  // 1 while signals[index] can be read
    kOutput,    // output `pin` of blocks[index]
    kInput,     // input `pin` of blocks[index]; in traces only
  };
  Kind kind = Kind::kSignal;
  std::size_t index = 0;
  unsigned pin = 0;
};

struct SignalSpec {
  enum class Kind { kConstant, kFile, kSeries };
  std::string name{};
  Kind kind = Kind::kConstant;
  double value = 0.0;                // of kConstant
  std::string path{};                // of kFile, and of kSeries for messages
  Series series{};                   // of kSeries
  std::optional<double> on_error{};  // the value while it cannot be read; nothing: the last one
};

struct BlockSpec {
  struct Constant {
    unsigned pin;
    double value;
  };
  struct Wire {
    unsigned pin;
    Source from{};
  };
  std::string name{};   // InstanceTag
  std::string group{};  // GroupTag
  Position at{};
  const BlockType* type = nullptr;
  std::vector<Constant> constants{};
  std::vector<Wire> wires{};
};

struct OutputSpec {
  std::string name{};
  Source from{};
  std::string from_text{};
  std::string path{};
  std::optional<double> safe{};
};

struct TraceSpec {
  struct Column {
    std::string name{};
    Source from{};
  };
  std::vector<Column> columns{};
  Duration every{};
  std::string path{};  // empty: none named
};

// What the pins must be after the first scan at or behind `after`.
struct Expectation {
  struct Wanted {
    std::string name{};
    Source from{};
    Position at{};
    double min = 0.0;
    double max = 0.0;
    std::string text{};  // the same for messages
  };
  Position at{};
  Duration after{};  // since the first scan
  std::string name{};
  std::vector<Wanted> values{};
};

struct Program {
  std::string path{};
  std::string name{};
  std::string group{};  // of blocks that name none
  Duration scan{};
  std::string state_dir{};
  int priority = 0;  // SCHED_FIFO; 0: the usual scheduling
  bool lock_memory = false;
  std::map<std::string, BlockType> types{};  // those in use, by name
  std::vector<SignalSpec> signals{};
  std::vector<BlockSpec> blocks{};  // in the order of their calls
  std::vector<OutputSpec> outputs{};
  TraceSpec trace;
  std::optional<Time> test_start{};
  std::vector<Expectation> expectations{};
};

// Reads and checks a program. Throws Rejection with every problem found.
Program read_program(const std::string& path);

}  // namespace scanhost
