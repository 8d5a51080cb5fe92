// What a program needs to know of a block to call it: pins by name, and the function.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/pin.h"
#include "host/problems.h"

namespace scanhost {

using BlockFunction = void (*)(const Pin* inputs, Pin* outputs);

struct PinName {
  std::string name;
  unsigned pin;
};

struct BlockType {
  std::string name;
  std::string library;  // file of the library; empty for the one that comes with scanhost
  std::string symbol;
  std::vector<PinName> inputs;
  std::vector<PinName> outputs;
  unsigned input_pins;  // sizes of the arrays of a call
  unsigned output_pins;
  Position at{};                     // of the library in the program; of foreign types only
  BlockFunction function = nullptr;  // set by load_functions (library.h)
};

// A block of the catalogue; nothing if there is none of that name.
std::optional<BlockType> catalogue_type(std::string_view name);
std::vector<std::string> catalogue_names();

std::optional<unsigned> find_pin(const std::vector<PinName>& pins, std::string_view name);
std::vector<std::string> names_of(const std::vector<PinName>& pins);

}  // namespace scanhost
