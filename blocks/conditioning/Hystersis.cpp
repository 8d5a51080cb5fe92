// Hystersis: switch with two levels.
//
//   Q      1 from an input at SetPoint on until it falls below SetPoint - LowBand; 0 while disabled
//   High   1 while the input is above SetPoint + HighBand, one call late after a jump from off; 0
//          while disabled
//
// With H = SetPoint + HighBand and L = SetPoint - LowBand, both belonging to the band L..H, the
// high position is left only through the band: an input that drops from above H to below L between
// two calls leaves Q and High on until it has been seen inside the band. An input that is not a
// number changes nothing.
//
// While disabled the position is kept. After that, Q and High are 0 until a rule sets them.
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  Flag Enable;
  Number InSignal;
  Number SetPoint;
  Number HighBand;
  Number LowBand;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, "runs the switch"),
    FIELD(In, InSignal, "the input"),
    FIELD(In, SetPoint, "level that switches Q on"),
    FIELD(In, HighBand, "High comes above SetPoint + HighBand"),
    FIELD(In, LowBand, "Q goes below SetPoint - LowBand"),
};

struct Out {
  Flag Q;
  Flag High;
};
constexpr Field outputs[] = {
    FIELD(Out, Q, "1 while switched on"),
    FIELD(Out, High, "1 while in the high position"),
};

enum Position : std::int32_t { kOff = 0, kOn = 1, kHigh = 2 };
constexpr StateName states[] = {
    {kOff, "off", "waits for SetPoint"},
    {kOn, "on", "switched on, inside the band"},
    {kHigh, "high", "switched on, above the band"},
};

struct Memory {
  std::int32_t TmpQ = 0;
  Position State = kOff;
  std::int32_t TmpHigh = 0;
};
constexpr Field keys[] = {
    FIELD(Memory, TmpQ, "Q of the previous call"),
    FIELD(Memory, State, "position"),
    FIELD(Memory, TmpHigh, "High of the previous call"),
};

void set(Memory& memory, Position position, std::int32_t q, std::int32_t high) {
  memory.State = position;
  memory.TmpQ = q;
  memory.TmpHigh = high;
}

Out step(const In& in, Memory& memory) {
  const Number x = in.InSignal;
  const Number high = in.SetPoint + in.HighBand;
  const Number low = in.SetPoint - in.LowBand;
  const bool in_band = low <= x && x <= high;
  if (!in.Enable) {
    set(memory, memory.State, 0, 0);
  } else {
    switch (memory.State) {
      case kOff:
        if (x < in.SetPoint) set(memory, kOff, 0, 0);
        if (x >= in.SetPoint) set(memory, kOn, 1, 0);
        break;
      case kOn:  // bands below 0 let several tests hold: the last one decides
        if (in_band) set(memory, kOn, 1, 0);
        if (x > high) set(memory, kHigh, 1, 1);
        if (x < low) set(memory, kOff, 0, 0);
        break;
      case kHigh:
        if (x > high) set(memory, kHigh, 1, 1);
        if (in_band) set(memory, kOn, 1, 0);
        break;
    }
  }
  return {.Q = {memory.TmpQ != 0}, .High = {memory.TmpHigh != 0}};
}

constexpr Block<In, Out, Memory> block = {
    .family = "conditioning",
    .title = "switch with hysteresis and a high level",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .states = states,
    .step = step,
};

}  // namespace

BLOCK(Hystersis, block)
