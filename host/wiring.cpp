#include "host/wiring.h"

namespace scanhost {

std::optional<Source> Wiring::find_signal(const std::string& name, Source::Kind kind) const {
  for (std::size_t i = 0; i < program_.signals.size(); ++i)
    if (program_.signals[i].name == name) return Source{kind, i, 0};
  return {};
}

std::optional<std::size_t> Wiring::find_block(const std::string& name, const std::string& text,
                                              Position at, const std::string& group) const {
  std::vector<std::size_t> found;
  std::vector<std::size_t> of_group;
  for (std::size_t i = 0; i < program_.blocks.size(); ++i) {
    const BlockSpec& block = program_.blocks[i];
    if (name == block.name || name == block.group + "/" + block.name) {
      found.push_back(i);
      if (block.group == group) of_group.push_back(i);
    }
  }
  if (of_group.size() == 1) return of_group.front();
  if (found.size() == 1) return found.front();
  if (found.empty()) {
    std::vector<std::string> names;
    for (const BlockSpec& block : program_.blocks) names.push_back(block.name);
    for (const SignalSpec& signal : program_.signals) names.push_back(signal.name);
    problems_.add(
        at, "the wire '" + text + "' leads to nothing: there is no block or signal '" + name + "'",
        suggest(name, names, "wire to \"Block.Pin\", \"Signal\" or \"Signal.ok\""));
  } else {
    problems_.add(at,
                  "the wire '" + text + "' may mean " + std::to_string(found.size()) + " blocks",
                  of_group.empty() ? "write \"Group/Block.Pin\"" : "give them different names");
  }
  return {};
}

std::optional<Source> Wiring::resolve(const std::string& text, Position at,
                                      const std::string& group, bool inputs_too) const {
  if (const auto signal = find_signal(text, Source::Kind::kSignal)) return signal;
  const std::size_t dot = text.rfind('.');
  const std::string name = text.substr(0, dot);
  const std::string pin = dot == std::string::npos ? "" : text.substr(dot + 1);
  if (pin == "ok")
    if (const auto signal = find_signal(name, Source::Kind::kSignalOk)) return signal;

  const std::optional<std::size_t> index = find_block(name, text, at, group);
  if (!index) return {};
  const BlockType* type = program_.blocks[*index].type;
  if (type == nullptr) return {};  // reported where its type is named
  if (const auto output = find_pin(type->outputs, pin))
    return Source{Source::Kind::kOutput, *index, *output};
  const std::optional<unsigned> input = find_pin(type->inputs, pin);
  if (input && inputs_too) return Source{Source::Kind::kInput, *index, *input};

  std::vector<std::string> pins = names_of(type->outputs);
  const std::string what = type->name + " '" + name + "'";
  if (pin.empty()) {
    problems_.add(at, "the wire '" + text + "' names a block without a pin",
                  "write \"" + name + "." + (pins.empty() ? "Pin" : pins.front()) + "\"");
  } else if (input) {
    problems_.add(at, "'" + pin + "' is an input of " + what, suggest("", pins, "wire an output"));
  } else {
    problems_.add(at, what + " has no output '" + pin + "'",
                  suggest(pin, pins,
                          type->library.empty() ? "'scanhost blocks " + type->name + "' lists them"
                                                : "[types." + type->name + "] lists them"));
  }
  return {};
}

bool Wiring::is_one_of_several(const BlockSpec& block) const {
  for (const BlockSpec& other : program_.blocks)
    if (&other != &block && other.name == block.name) return true;
  return false;
}

std::vector<TraceSpec::Column> Wiring::everything() const {
  std::vector<TraceSpec::Column> columns;
  for (std::size_t i = 0; i < program_.signals.size(); ++i)
    columns.push_back({program_.signals[i].name, {Source::Kind::kSignal, i, 0}});
  for (std::size_t i = 0; i < program_.blocks.size(); ++i) {
    const BlockSpec& block = program_.blocks[i];
    const std::string name = is_one_of_several(block) ? block.group + "/" + block.name : block.name;
    for (const PinName& output : block.type->outputs)
      columns.push_back({name + "." + output.name, {Source::Kind::kOutput, i, output.pin}});
  }
  return columns;
}

}  // namespace scanhost
