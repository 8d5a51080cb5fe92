#include "host/types.h"

#include <algorithm>
#include <filesystem>

namespace scanhost {
namespace {

// Pins behind those that the program names: one that was forgotten does no harm.
constexpr unsigned kSpare = 16;

std::vector<PinName> read_pins(Section& section, const std::string& key, unsigned first,
                               Problems& problems) {
  std::vector<PinName> pins;
  const Value* list = section.list(key);
  if (list == nullptr) return pins;
  for (const Value& item : list->items) {
    if (!item.is_text() || item.text.empty() || item.text.find_first_of(".,") != std::string::npos)
      problems.add(item.at, "'" + key + "' has an item that is no name of a pin",
                   "write texts without '.' and ',': " + key + " = [\"Level\"]");
    else if (find_pin(pins, item.text))
      problems.add(item.at, "'" + key + "' has the pin '" + item.text + "' twice",
                   "give each pin a name of its own");
    else
      pins.push_back({item.text, first + static_cast<unsigned>(pins.size())});
  }
  return pins;
}

std::string find_library(const std::string& name, const std::string& program) {
  const std::filesystem::path beside = std::filesystem::path(program).parent_path() / name;
  std::error_code no_error;
  if (name.find('/') == name.npos && !std::filesystem::exists(beside, no_error)) return name;
  return std::filesystem::absolute(beside).string();  // the loader searches names without a slash
}

BlockType read_type(const Entry& entry, const std::string& program, Problems& problems) {
  BlockType type{};
  type.name = entry.key;
  type.at = entry.at;
  Section section(entry.value, entry.at, "type '" + entry.key + "'", problems);
  section.require("library", "library = \"libplant.so\"");
  section.require("outputs", "outputs = [\"Level\"]");
  if (const auto library = section.text("library")) {
    type.at = section.entry("library").value.at;
    type.library = find_library(*library, program);
  }
  type.symbol = section.text("symbol").value_or(entry.key);
  type.inputs = read_pins(section, "inputs", SCANBLOCKS_FIRST_VALUE, problems);
  type.outputs = read_pins(section, "outputs", 0, problems);
  if (section.find("outputs") != nullptr && type.outputs.empty())
    problems.add(section.entry("outputs").value.at, "type '" + entry.key + "' has no outputs",
                 "name the output pins from 0 on");
  type.input_pins = SCANBLOCKS_FIRST_VALUE + static_cast<unsigned>(type.inputs.size()) + kSpare;
  type.output_pins = static_cast<unsigned>(type.outputs.size()) + kSpare;
  section.finish();
  return type;
}

}  // namespace

std::map<std::string, BlockType> read_types(Section& top, const std::string& program,
                                            Problems& problems) {
  std::map<std::string, BlockType> types;
  const Value* tables = top.table("types");
  if (tables == nullptr) return types;
  for (const Entry& entry : tables->entries) {
    if (!entry.value.is_table())
      problems.add(entry.value.at, "type '" + entry.key + "' is " + kind_name(entry.value.kind),
                   "write a table: [types." + entry.key + "] with library, inputs and outputs");
    else if (catalogue_type(entry.key))
      problems.add(
          entry.at, "'" + entry.key + "' is a block of the catalogue",
          "give the type another name and the function's as symbol = \"" + entry.key + "\"");
    else
      types.emplace(entry.key, read_type(entry, program, problems));
  }
  return types;
}

}  // namespace scanhost
