#include "frame/field.h"

namespace scanblocks {
namespace {

double output_value(const void* members, PinSlot slot) {
  switch (slot.kind) {
    case Kind::kNumber:
      return member<Number>(members, slot.offset).value;
    case Kind::kSingle:
      return to_double(member<float>(members, slot.offset));
    case Kind::kFlag:
      return member<Flag>(members, slot.offset) ? 1.0 : 0.0;
    case Kind::kExactFlag:
      return member<ExactFlag>(members, slot.offset) ? 1.0 : 0.0;
    case Kind::kUnsigned:
      return member<std::uint32_t>(members, slot.offset);
    case Kind::kUnsigned64:
      return static_cast<double>(member<std::uint64_t>(members, slot.offset));
    case Kind::kSigned64:
      return static_cast<double>(member<std::int64_t>(members, slot.offset));
    case Kind::kInteger:
    case Kind::kState:
    case Kind::kCount:
      break;
  }
  return member<std::int32_t>(members, slot.offset);
}

}  // namespace

void read_pins(std::span<const PinSlot> slots, const Pin* pins, void* members) {
  for (const PinSlot slot : slots) {
    const double value = pins[slot.pin].Value;
    switch (slot.kind) {
      case Kind::kNumber:
        member<Number>(members, slot.offset).value = value;
        break;
      case Kind::kSingle:
        member<float>(members, slot.offset) = to_single(value);
        break;
      case Kind::kFlag:
        member<Flag>(members, slot.offset).on = value >= 1.0 && value < 2.0;
        break;
      case Kind::kExactFlag:
        member<ExactFlag>(members, slot.offset).on = value == 1.0;
        break;
      case Kind::kUnsigned:
        member<std::uint32_t>(members, slot.offset) = to_uint32(value);
        break;
      default:
        member<std::int32_t>(members, slot.offset) = to_int32(value);
        break;
    }
  }
}

void write_pins(std::span<const PinSlot> slots, const void* members, Pin* pins) {
  for (const PinSlot slot : slots) pins[slot.pin].Value = output_value(members, slot);
}

}  // namespace scanblocks
