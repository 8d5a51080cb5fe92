// AAlarm: four latched limit alarms over one analog value.
//
// Raised by one call with InSignal in the band of the alarm, without a delay; all bounds excluded:
//
//   HHAlm   above HHLimit + DeadBand
//   HAlm    between HLimit + DeadBand and HHLimit - DeadBand
//   LAlm    between LLLimit + DeadBand and LLimit - DeadBand
//   LLAlm   below LLLimit - DeadBand
//
//   State   0
//
// A value that jumps past HHLimit within one scan raises HHAlm alone: no call has seen it in the
// band of HAlm. The dead band keeps its sign: a negative one makes neighbouring bands overlap, and
// one value raises both alarms. A band that limits out of order leave empty raises nothing, nor
// does a NaN. Alarms are acknowledged together; alarm.h tells how.
#include "blocks/alarms/alarm.h"

using namespace scanblocks;

namespace {

struct In {
  Flag Enable;
  Number InSignal;
  Number HHLimit;
  Number HLimit;
  Number LLimit;
  Number LLLimit;
  Number DeadBand;
  std::int32_t Reset;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, kEnableHelp),
    FIELD(In, InSignal, "the supervised value"),
    FIELD(In, HHLimit, "high-high limit"),
    FIELD(In, HLimit, "high limit"),
    FIELD(In, LLimit, "low limit"),
    FIELD(In, LLLimit, "low-low limit"),
    FIELD(In, DeadBand, "by how much the value must pass a limit, with its sign"),
    NO_PIN,
    FIELD(In, Reset, kResetHelp),
};

struct Out {
  std::int32_t HHAlm;
  std::int32_t HAlm;
  std::int32_t LAlm;
  std::int32_t LLAlm;
  std::int32_t State;
};
constexpr Field outputs[] = {
    FIELD(Out, HHAlm, "1 while the high-high alarm is on"),
    FIELD(Out, HAlm, "1 while the high alarm is on"),
    FIELD(Out, LAlm, "1 while the low alarm is on"),
    FIELD(Out, LLAlm, "1 while the low-low alarm is on"),
    FIELD(Out, State, "0"),
};

struct Memory {
  Number InSignalOld;
  std::uint32_t TmpTime = 0;
  std::int32_t ResetOld = 0;
  std::int32_t HHAlm = 0;
  std::int32_t State = 0;
  std::int32_t HAlm = 0;
  std::int32_t LAlm = 0;
  std::int32_t LLAlm = 0;
};
constexpr Field keys[] = {
    WRITE_ONLY(Memory, InSignalOld, "InSignal of this call"),
    FIELD(Memory, TmpTime, "last acknowledgement", kClockSec),
    FIELD(Memory, ResetOld, kResetOldHelp),
    FIELD(Memory, HHAlm, "high-high alarm"),
    FIELD(Memory, State, "carried along, 0 from the first acknowledgement or disabled call on"),
    FIELD(Memory, HAlm, "high alarm"),
    FIELD(Memory, LAlm, "low alarm"),
    FIELD(Memory, LLAlm, "low-low alarm"),
};

void clear(Memory& memory) {
  memory.HHAlm = memory.HAlm = memory.LAlm = memory.LLAlm = 0;
  memory.State = 0;
}

void evaluate(const In& in, Memory& memory) {
  const Number value = in.InSignal;
  const Number band = in.DeadBand;
  if (value < in.LLLimit - band) memory.LLAlm = 1;
  if (value > in.LLLimit + band && value < in.LLimit - band) memory.LAlm = 1;
  if (value > in.HLimit + band && value < in.HHLimit - band) memory.HAlm = 1;
  if (value > in.HHLimit + band) memory.HHAlm = 1;
}

Out step(const In& in, Memory& memory) {
  supervise(in, memory, evaluate);
  memory.InSignalOld = in.InSignal;
  return {memory.HHAlm, memory.HAlm, memory.LAlm, memory.LLAlm, memory.State};
}

constexpr Block<In, Out, Memory> block = {
    .family = "alarms",
    .title = "four latched limit alarms over an analog value",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .step = step,
};

}  // namespace

BLOCK(AAlarm, block)
