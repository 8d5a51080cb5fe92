// Resolves the texts of wires: "Signal", "Signal.ok", "Block.Pin", "Group/Block.Pin".
//
// Of several blocks with one name the one in the wire's own group is meant; otherwise the wire must
// name the group.
#pragma once

#include <optional>
#include <string>

#include "host/program.h"

namespace scanhost {

class Wiring {
 public:
  Wiring(const Program& program, Problems& problems) : program_(program), problems_(problems) {}

  // Where `text` leads, seen from a block of `group` (empty elsewhere). Reports a wire to nothing
  // at `at`. Inputs count only where `inputs_too`.
  std::optional<Source> resolve(const std::string& text, Position at, const std::string& group,
                                bool inputs_too = false) const;

  // All signals and all outputs of all blocks: what a trace without a list records.
  std::vector<TraceSpec::Column> everything() const;

 private:
  std::optional<Source> find_signal(const std::string& name, Source::Kind kind) const;
  std::optional<std::size_t> find_block(const std::string& name, const std::string& text,
                                        Position at, const std::string& group) const;
  bool is_one_of_several(const BlockSpec& block) const;

  const Program& program_;
  Problems& problems_;
};

}  // namespace scanhost
