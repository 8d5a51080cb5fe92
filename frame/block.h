// A block: its tables, its step, and the one function that fixes the order of a call.
//
// A block file defines In, Out, Memory (only if it remembers something), their tables and
//
//   Out step(const In& in, Memory& memory)      or      Out step(const In& in)
//
// then one constexpr Block and BLOCK(Name, block), which exports the function `Name`.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "frame/clock.h"
#include "frame/field.h"
#include "frame/number.h"
#include "frame/state_file.h"

namespace scanblocks {

template <class InType, class OutType, class MemoryType = void>
struct Block {
  using In = InType;
  using Out = OutType;
  using Memory = MemoryType;

  const char* family;
  const char* title;
  std::span<const Field> inputs;
  std::span<const Field> outputs;
  std::span<const Field> keys;
  std::span<const StateName> states = {};
  Out (*step)(const In& in, Memory& memory);
  // Called where the file could not be opened, for values other than those of an absent key.
  void (*first_call)(const In& in, Memory& memory) = nullptr;
};

template <class InType, class OutType>
struct Block<InType, OutType, void> {
  using In = InType;
  using Out = OutType;

  const char* family;
  const char* title;
  std::span<const Field> inputs;
  std::span<const Field> outputs;
  Out (*step)(const In& in);
};

consteval std::size_t count_pins(std::span<const Field> fields) {
  std::size_t count = 0;
  for (const Field& field : fields) count += field.mark == Mark::kNoPin ? 0 : 1;
  return count;
}

template <std::size_t kCount>
consteval std::array<PinSlot, kCount> pin_slots(std::span<const Field> fields, std::uint8_t pin) {
  std::array<PinSlot, kCount> slots{};
  std::size_t count = 0;
  for (const Field& field : fields) {
    if (field.mark != Mark::kNoPin) slots[count++] = {field.offset, pin, field.kind};
    ++pin;
  }
  return slots;
}

template <std::size_t kCount>
consteval std::array<KeySlot, kCount> key_slots(std::span<const Field> fields) {
  std::array<KeySlot, kCount> slots{};
  for (std::size_t i = 0; i < kCount; ++i) {
    const Field& field = fields[i];
    for (std::size_t c = 0; field.name[c] != '\0'; ++c) slots[i].name[c] = field.name[c];
    slots[i].offset = field.offset;
    slots[i].kind = field.kind;
    slots[i].read_back = field.mark != Mark::kWriteOnly;
  }
  return slots;
}

template <const auto& block>
inline constexpr auto input_slots = pin_slots<count_pins(block.inputs)>(block.inputs,
                                                                        SCANBLOCKS_FIRST_VALUE);
template <const auto& block>
inline constexpr auto output_slots = pin_slots<count_pins(block.outputs)>(block.outputs, 0);
template <const auto& block>
inline constexpr auto keys_of = key_slots<block.keys.size()>(block.keys);

// One call. Memory is made before the file is opened: the initialiser of a time stamp that takes
// the clock is the first reading of the call.
template <const auto& block>
void call(const Pin* inputs, Pin* outputs, [[maybe_unused]] std::string_view prefix) {
  using BlockType = std::remove_cvref_t<decltype(block)>;
  typename BlockType::In in{};
  read_pins(input_slots<block>, inputs, &in);
  typename BlockType::Out out{};
  if constexpr (requires { typename BlockType::Memory; }) {
    static_assert(block.keys.size() <= kMaxKeys);
    typename BlockType::Memory memory{};
    StateFile file(inputs, prefix);
    if (file.opened()) {
      file.load(keys_of<block>, &memory);
    } else if (block.first_call != nullptr) {
      block.first_call(in, memory);
    }
    out = block.step(in, memory);
    file.save(keys_of<block>, &memory);
  } else {
    out = block.step(in);
  }
  write_pins(output_slots<block>, &out, outputs);
}

template <class BlockType>
constexpr BlockInfo describe(const char* name, const BlockType& block) {
  if constexpr (requires { block.keys; }) {
    return {name, block.family, block.title, block.inputs, block.outputs, block.keys, block.states};
  } else {
    return {name, block.family, block.title, block.inputs, block.outputs, {}, {}};
  }
}

#define SCANBLOCKS_EXPORT __attribute__((visibility("default")))

// Exports the block under its name and describes it for the catalogue.
#define BLOCK(Name, block)                                                    \
  extern "C" SCANBLOCKS_EXPORT void Name(const Pin* pins_in, Pin* pins_out) { \
    ::scanblocks::call<block>(pins_in, pins_out, "/" #Name "_");              \
  }                                                                           \
  namespace scanblocks::catalogue {                                           \
  extern const BlockInfo Name;                                                \
  constinit const BlockInfo Name = ::scanblocks::describe(#Name, block);      \
  }

}  // namespace scanblocks
