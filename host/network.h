// The pins of all blocks and the wires between them: calls the blocks in the order of the program.
#pragma once

#include <memory>
#include <vector>

#include "frame/pin.h"
#include "host/figures.h"
#include "host/program.h"
#include "host/signals.h"

namespace scanhost {

class Network {
 public:
  Network(const Program& program, const std::string& state_dir, const Signals& signals);

  // A wire takes its value right before the block is called that it leads to: from a block further
  // up that of this scan, from one further down that of the previous scan.
  // `times` gets the time of every block, its wires included; nullptr: none is taken.
  void call_blocks(std::vector<Histogram>* times = nullptr);

  // Where the value stands; valid as long as the network and its signals.
  const double* value(const Source& source) const;

 private:
  struct Wire {
    const double* from;
    double* to;
  };
  struct Call {
    BlockFunction function;
    Pin* inputs;
    Pin* outputs;
    std::size_t wires_end;  // its wires end here, and begin where those of the call before end
  };

  const Signals& signals_;
  std::vector<Pin> pins_;
  std::vector<Call> calls_;
  std::vector<Wire> wires_;
};

}  // namespace scanhost
