#include "host/block_type.h"

#include "exports/catalogue.h"

namespace scanhost {
namespace {

std::vector<PinName> name_pins(std::span<const scanblocks::Field> fields, unsigned first) {
  std::vector<PinName> pins;
  for (const scanblocks::Field& field : fields) {
    if (field.mark != scanblocks::Mark::kNoPin) pins.push_back({field.name, first});
    ++first;
  }
  return pins;
}

}  // namespace

std::optional<BlockType> catalogue_type(std::string_view name) {
  const scanblocks::BlockInfo* block = scanblocks::find_block(name);
  if (block == nullptr) return {};
  return BlockType{
      .name = block->name,
      .library = {},
      .symbol = block->name,
      .inputs = name_pins(block->inputs, SCANBLOCKS_FIRST_VALUE),
      .outputs = name_pins(block->outputs, 0),
      .input_pins = static_cast<unsigned>(SCANBLOCKS_FIRST_VALUE + block->inputs.size()),
      .output_pins = static_cast<unsigned>(block->outputs.size()),
      .at = {},
  };
}

std::vector<std::string> catalogue_names() {
  std::vector<std::string> names;
  for (const scanblocks::BlockInfo* block : scanblocks::catalogue_of_blocks())
    names.emplace_back(block->name);
  return names;
}

std::optional<unsigned> find_pin(const std::vector<PinName>& pins, std::string_view name) {
  for (const PinName& pin : pins)
    if (pin.name == name) return pin.pin;
  return {};
}

std::vector<std::string> names_of(const std::vector<PinName>& pins) {
  std::vector<std::string> names;
  names.reserve(pins.size());
  for (const PinName& pin : pins) names.push_back(pin.name);
  return names;
}

}  // namespace scanhost
