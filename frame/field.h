// The field table: one row binds a name to a struct member, with a sentence. The same rows read
// the input pins, write the output pins, load and save the state, name the pins for the host and
// print the reference manual.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include "frame/number.h"
#include "frame/pin.h"

namespace scanblocks {

// A flag pin. As an input: true while the value, truncated toward zero, is 1 (1.0 up to but not
// including 2.0). As an output or a state value: 1 or 0.
struct Flag {
  bool on = false;
  constexpr operator bool() const { return on; }
};

// A flag input that is true for exactly 1.0 only.
struct ExactFlag {
  bool on = false;
  constexpr operator bool() const { return on; }
};

// A signed 32-bit value that is stored without a sign ("%lu") and read back with one, saturating.
struct Count {
  std::int32_t value = 0;
};

// How a member is read from a pin and stored in a state file; it follows from the member's type.
enum class Kind : std::uint8_t {
  kNumber,      // Number          as it is                       "%f"
  kSingle,      // float           rounded to single precision    "%f", rounded when read
  kInteger,     // std::int32_t    toward zero, saturating        "%d"
  kState,       // enum : int32_t  the number of a state          "%d"
  kFlag,        // Flag            truncated flag test            "%d"
  kExactFlag,   // ExactFlag       exact flag test
  kCount,       // Count                                          "%lu", saturating when read
  kUnsigned,    // std::uint32_t   toward zero, saturating        "%lu", low 32 bits when read
  kUnsigned64,  // std::uint64_t                                  "%llu"
  kSigned64,    // std::int64_t                                   "%llu"
};

template <class Member>
consteval Kind kind_of() {
  if constexpr (std::is_same_v<Member, Number>)
    return Kind::kNumber;
  else if constexpr (std::is_same_v<Member, float>)
    return Kind::kSingle;
  else if constexpr (std::is_same_v<Member, std::int32_t>)
    return Kind::kInteger;
  else if constexpr (std::is_same_v<Member, Flag>)
    return Kind::kFlag;
  else if constexpr (std::is_same_v<Member, ExactFlag>)
    return Kind::kExactFlag;
  else if constexpr (std::is_same_v<Member, Count>)
    return Kind::kCount;
  else if constexpr (std::is_same_v<Member, std::uint32_t>)
    return Kind::kUnsigned;
  else if constexpr (std::is_same_v<Member, std::uint64_t>)
    return Kind::kUnsigned64;
  else if constexpr (std::is_same_v<Member, std::int64_t>)
    return Kind::kSigned64;
  else {
    static_assert(
        std::is_enum_v<Member> && std::is_same_v<std::underlying_type_t<Member>, std::int32_t>,
        "a field is one of the types of Kind");
    return Kind::kState;
  }
}

enum class Mark : std::uint8_t {
  kNone,
  kWriteOnly,  // a key that is written and never read back
  kNoPin,      // a number that the block skips; the row has no member
};

struct Field {
  const char* name;
  const char* help;
  const char* unit = "";  // "s", "ms", "min", "%", ...; kClockMs, kClockSec; "" for none
  std::uint16_t offset = 0;
  Kind kind = Kind::kNumber;
  Mark mark = Mark::kNone;
};

// Units of time stamps: readings of the wall clock since 1970.
inline constexpr const char* kClockMs = "clock ms";
inline constexpr const char* kClockSec = "clock s";

// FIELD(Struct, Member, "sentence") or FIELD(Struct, Member, "sentence", "unit").
// FIELD_AS takes the exported name apart from the member; WRITE_ONLY is a key that is never read.
#define FIELD_AS(Struct, Member, name, ...)                \
  ::scanblocks::make_field(name, offsetof(Struct, Member), \
                           ::scanblocks::kind_of<decltype(Struct::Member)>(), __VA_ARGS__)
#define FIELD(Struct, Member, ...) FIELD_AS(Struct, Member, #Member, __VA_ARGS__)
#define WRITE_ONLY(Struct, Member, ...) ::scanblocks::write_only(FIELD(Struct, Member, __VA_ARGS__))
#define NO_PIN \
  ::scanblocks::Field { .name = "", .help = "not read", .mark = ::scanblocks::Mark::kNoPin }

consteval Field make_field(const char* name, std::size_t offset, Kind kind, const char* help,
                           const char* unit = "") {
  return {name, help, unit, static_cast<std::uint16_t>(offset), kind, Mark::kNone};
}
consteval Field write_only(Field field) {
  field.mark = Mark::kWriteOnly;
  return field;
}

// A position of a block's state machine, as it goes to the pin and to the file.
struct StateName {
  std::int32_t number;
  const char* name;
  const char* meaning;
};

// All that the host and the manual know of a block beyond calling it.
struct BlockInfo {
  const char* name;                // as exported
  const char* family;              // its folder: "control", "drives", ...
  const char* title;               // what it is, in a few words
  std::span<const Field> inputs;   // row 0 is input pin 5
  std::span<const Field> outputs;  // row 0 is output pin 0
  std::span<const Field> keys;     // the state file's records in their order; none: stateless
  std::span<const StateName> states;
};

// What a call needs of the rows, without the sentences.
struct PinSlot {
  std::uint16_t offset;
  std::uint8_t pin;
  Kind kind;
};
struct KeySlot {
  char name[20];  // NUL-terminated
  std::uint16_t offset;
  Kind kind;
  bool read_back;
};

// The member that a slot stands for, by copying its bytes: Type has the layout of the member's own
// type, as std::int32_t has for an enum of states.
template <class Type>
Type get(const void* members, std::uint16_t offset) {
  const void* member = static_cast<const char*>(members) + offset;
  Type value;
  __builtin_memcpy(&value, __builtin_assume_aligned(member, alignof(Type)), sizeof value);
  return value;
}
template <class Type>
void set(void* members, std::uint16_t offset, Type value) {
  void* member = static_cast<char*>(members) + offset;
  __builtin_memcpy(__builtin_assume_aligned(member, alignof(Type)), &value, sizeof value);
}

// Fills the struct at `members` from the value pins of a call.
void read_pins(std::span<const PinSlot> slots, const Pin* pins, void* members);
// Writes the members to Value of the output pins; a flag as exactly 1.0 or 0.0.
void write_pins(std::span<const PinSlot> slots, const void* members, Pin* pins);

}  // namespace scanblocks
