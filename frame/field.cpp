#include "frame/field.h"

namespace scanblocks {
namespace {

double output_value(const void* members, PinSlot slot) {
  switch (slot.kind) {
    case Kind::kNumber:
      return get<Number>(members, slot.offset).value;
    case Kind::kSingle:
      return to_double(get<float>(members, slot.offset));
    case Kind::kFlag:
      return get<Flag>(members, slot.offset) ? 1.0 : 0.0;
    case Kind::kExactFlag:
      return get<ExactFlag>(members, slot.offset) ? 1.0 : 0.0;
    case Kind::kUnsigned:
      return get<std::uint32_t>(members, slot.offset);
    case Kind::kUnsigned64:
      return static_cast<double>(get<std::uint64_t>(members, slot.offset));
    case Kind::kSigned64:
      return static_cast<double>(get<std::int64_t>(members, slot.offset));
    case Kind::kInteger:
    case Kind::kState:
    case Kind::kCount:
      break;
  }
  return get<std::int32_t>(members, slot.offset);
}

}  // namespace

void read_pins(std::span<const PinSlot> slots, const Pin* pins, void* members) {
  for (const PinSlot slot : slots) {
    const double value = pins[slot.pin].Value;
    switch (slot.kind) {
      case Kind::kNumber:
        set<Number>(members, slot.offset, value);
        break;
      case Kind::kSingle:
        set<float>(members, slot.offset, to_single(value));
        break;
      case Kind::kFlag:
        set<Flag>(members, slot.offset, {value >= 1.0 && value < 2.0});
        break;
      case Kind::kExactFlag:
        set<ExactFlag>(members, slot.offset, {value == 1.0});
        break;
      case Kind::kUnsigned:
        set<std::uint32_t>(members, slot.offset, to_uint32(value));
        break;
      default:
        set<std::int32_t>(members, slot.offset, to_int32(value));
        break;
    }
  }
}

void write_pins(std::span<const PinSlot> slots, const void* members, Pin* pins) {
  for (const PinSlot slot : slots) pins[slot.pin].Value = output_value(members, slot);
}

}  // namespace scanblocks
