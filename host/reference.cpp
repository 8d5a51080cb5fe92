#include "host/reference.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "exports/catalogue.h"

namespace scanhost {
namespace {

using scanblocks::BlockInfo;
using scanblocks::Field;
using scanblocks::Kind;
using scanblocks::Mark;

std::string pad(std::string text, std::size_t width) {
  text.resize(std::max(width, text.size() + 1), ' ');
  return text;
}

std::string in_brackets(const Field& field) {
  return *field.unit == '\0' ? "" : " [" + std::string(field.unit) + "]";
}

// How a value pin is read or written.
const char* reading(Kind kind) {
  switch (kind) {
    case Kind::kNumber:
      return "number";
    case Kind::kSingle:
      return "number, single precision";
    case Kind::kFlag:
      return "flag";
    case Kind::kExactFlag:
      return "flag, exactly 1";
    case Kind::kState:
      return "state";
    case Kind::kInteger:
    case Kind::kCount:
    case Kind::kUnsigned:
    case Kind::kUnsigned64:
    case Kind::kSigned64:
      break;
  }
  return "integer";
}

// How a value of the state file is written.
const char* format(Kind kind) {
  switch (kind) {
    case Kind::kNumber:
      return "number, six decimals";
    case Kind::kSingle:
      return "number, single precision, six decimals";
    case Kind::kCount:
    case Kind::kUnsigned:
      return "integer without sign, 32 bits";
    case Kind::kUnsigned64:
    case Kind::kSigned64:
      return "integer without sign, 64 bits";
    case Kind::kFlag:
    case Kind::kExactFlag:
      return "flag, 1 or 0";
    case Kind::kState:
      return "state number";
    case Kind::kInteger:
      break;
  }
  return "integer";
}

// Stamps are readings of the wall clock since 1970.
std::string unit_of_key(const Field& key) {
  const std::string_view unit = key.unit;
  if (unit == scanblocks::kClockMs) return "ms since 1970";
  if (unit == scanblocks::kClockSec) return "s since 1970";
  return std::string(unit);
}

nlohmann::ordered_json pins_json(std::span<const Field> fields, std::size_t first) {
  auto pins = nlohmann::ordered_json::array();
  for (std::size_t i = 0; i < fields.size(); ++i)
    if (const Field& field = fields[i]; field.mark != Mark::kNoPin)
      pins.push_back({{"pin", first + i},
                      {"name", field.name},
                      {"kind", reading(field.kind)},
                      {"unit", field.unit},
                      {"meaning", field.help}});
  return pins;
}

void list_pins(std::string& text, const char* title, std::span<const Field> fields,
               std::size_t first) {
  text += title;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Field& field = fields[i];
    if (field.mark == Mark::kNoPin) continue;
    text += "  " + pad(std::to_string(first + i), 4) + pad(field.name, 16) +
            pad(reading(field.kind), 10) + field.help + in_brackets(field) + "\n";
  }
}

// Text in a cell of a table.
std::string cell(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '|' || c == '*' || c == '<') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

void tabulate_pins(std::string& text, const char* title, std::span<const Field> fields,
                   std::size_t first) {
  text += std::string("\n## ") + title + "\n\n| Pin | Name | Read as | Unit | Meaning |\n";
  if (first == 0) text.replace(text.rfind("Read as"), 7, "Kind");
  text += "|---|---|---|---|---|\n";
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Field& field = fields[i];
    if (field.mark == Mark::kNoPin) {
      text += "| " + std::to_string(first + i) + " | | not read | | |\n";
    } else {
      text += "| " + std::to_string(first + i) + " | `" + field.name + "` | " +
              reading(field.kind) + " | " + cell(field.unit) + " | " + cell(field.help) + " |\n";
    }
  }
}

}  // namespace

std::string block_list() {
  std::string text;
  for (const BlockInfo* block : scanblocks::catalogue_of_blocks())
    text += pad(block->name, 16) + pad(block->family, 14) + block->title + "\n";
  return text;
}

std::string block_text(const BlockInfo& block) {
  std::string text = pad(block.name, 16) + pad(block.family, 14) + block.title + "\n";
  list_pins(text, "inputs\n", block.inputs, SCANBLOCKS_FIRST_VALUE);
  list_pins(text, "outputs\n", block.outputs, 0);
  if (!block.keys.empty()) text += "state file\n";
  for (const Field& key : block.keys)
    text += "  " + pad(key.name, 20) + key.help + in_brackets(key) + ", " + format(key.kind) +
            (key.mark == Mark::kWriteOnly ? " (not read back)" : "") + "\n";
  if (!block.states.empty()) text += "states\n";
  for (const scanblocks::StateName& state : block.states)
    text +=
        "  " + pad(std::to_string(state.number), 4) + pad(state.name, 16) + state.meaning + "\n";
  return text;
}

std::string block_markdown(const BlockInfo& block) {
  std::string text =
      std::string("# ") + block.name + "\n\n" + block.title + " (" + block.family + ").\n";
  tabulate_pins(text, "Inputs", block.inputs, SCANBLOCKS_FIRST_VALUE);
  tabulate_pins(text, "Outputs", block.outputs, 0);
  if (block.keys.empty())
    return text + "\n## State file\n\nNone: the outputs follow from the inputs.\n";

  text += "\n## State file\n\nIn `" + std::string(block.name) +
          "_GROUP_NAME.dat`, in this order.\n\n| Key | Written as | Unit | Meaning "
          "|\n|---|---|---|---|\n";
  for (const Field& key : block.keys)
    text += std::string("| `") + key.name + "` | " + format(key.kind) + " | " +
            cell(unit_of_key(key)) + " | " + cell(key.help) +
            (key.mark == Mark::kWriteOnly ? "; not read back" : "") + " |\n";
  if (block.states.empty()) return text;

  text += "\n## States\n\n| Number | Name | Meaning |\n|---|---|---|\n";
  for (const scanblocks::StateName& state : block.states)
    text += "| " + std::to_string(state.number) + " | " + cell(state.name) + " | " +
            cell(state.meaning) + " |\n";
  return text;
}

std::string blocks_json(std::span<const BlockInfo* const> blocks) {
  auto all = nlohmann::ordered_json::array();
  for (const BlockInfo* block : blocks) {
    auto states = nlohmann::ordered_json::array();
    for (const scanblocks::StateName& state : block->states)
      states.push_back(
          {{"number", state.number}, {"name", state.name}, {"meaning", state.meaning}});
    all.push_back({{"name", block->name},
                   {"family", block->family},
                   {"title", block->title},
                   {"inputs", pins_json(block->inputs, SCANBLOCKS_FIRST_VALUE)},
                   {"outputs", pins_json(block->outputs, 0)},
                   {"states", states}});
  }
  return all.dump(2) + "\n";
}

}  // namespace scanhost
