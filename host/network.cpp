#include "host/network.h"

#include <algorithm>

namespace scanhost {
namespace {

void set_text(Pin& pin, const std::string& text) {
  std::copy_n(text.begin(), std::min(text.size(), sizeof pin.Text - 1), pin.Text);
}

}  // namespace

Network::Network(const Program& program, const std::string& state_dir, const Signals& signals)
    : signals_(signals) {
  std::size_t count = 0;
  for (const BlockSpec& block : program.blocks)
    count += block.type->input_pins + block.type->output_pins;
  pins_.resize(count);

  Pin* pin = pins_.data();
  for (const BlockSpec& block : program.blocks) {
    calls_.push_back({block.type->function, pin, pin + block.type->input_pins, 0});
    set_text(pin[SCANBLOCKS_STATE_DIR], state_dir);
    set_text(pin[SCANBLOCKS_INSTANCE_TAG], block.name);
    set_text(pin[SCANBLOCKS_GROUP_TAG], block.group);
    for (const BlockSpec::Constant& constant : block.constants)
      pin[constant.pin].Value = constant.value;
    pin += block.type->input_pins + block.type->output_pins;
  }
  for (std::size_t i = 0; i < calls_.size(); ++i) {
    for (const BlockSpec::Wire& wire : program.blocks[i].wires)
      wires_.push_back({value(wire.from), &calls_[i].inputs[wire.pin].Value});
    calls_[i].wires_end = wires_.size();
  }
}

void Network::call_blocks(std::vector<Histogram>* times) {
  std::size_t wire = 0;
  std::uint64_t before = times != nullptr ? monotonic_ns() : 0;
  for (std::size_t i = 0; i < calls_.size(); ++i) {
    const Call& call = calls_[i];
    for (; wire < call.wires_end; ++wire) *wires_[wire].to = *wires_[wire].from;
    call.function(call.inputs, call.outputs);
    if (times == nullptr) continue;
    const std::uint64_t after = monotonic_ns();
    (*times)[i].add(after - before);
    before = after;
  }
}

const double* Network::value(const Source& source) const {
  switch (source.kind) {
    case Source::Kind::kSignal:
      return signals_.value(source.index);
    case Source::Kind::kSignalOk:
      return signals_.ok(source.index);
    case Source::Kind::kOutput:
      return &calls_[source.index].outputs[source.pin].Value;
    case Source::Kind::kInput:
      break;
  }
  return &calls_[source.index].inputs[source.pin].Value;
}

}  // namespace scanhost
