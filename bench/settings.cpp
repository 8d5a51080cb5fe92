#include "bench/settings.h"

#include <string_view>

namespace {

struct Setting {
  std::string_view block;  // "" for every block
  std::string_view pin;
  double even;
  double odd;
};

// The first that fits; 1 where none does.
constexpr Setting kSettings[] = {
    {"DAlarm", "InSignal", 1, 0},
    {"DWatch", "InSignal", 1, 0},
    {"RunHours", "InSignal", 1, 1},
    {"WDT", "Signal", 1, 0},
    {"Scheduler", "Event", 0, 0},
    {"AAlarm", "DeadBand", 0.5, 0.5},
    {"", "InSignal", 51.25, 48.75},
    {"", "Signal", 51.25, 48.75},
    {"", "ProcessValue", 51.25, 48.75},
    {"", "SetPoint", 50, 50},
    {"", "Bias", 12.5, 12.5},
    {"", "Reset", 0, 0},
    {"", "Inhibit", 0, 0},
    {"", "InMin", 0, 0},
    {"", "OutMin", -100, -100},
    {"", "InMax", 100, 100},
    {"", "OutMax", 100, 100},
    {"", "LLLimit", 10, 10},
    {"", "LLimit", 20, 20},
    {"", "LowLimit", 20, 20},
    {"", "HLimit", 80, 80},
    {"", "HighLimit", 80, 80},
    {"", "HHLimit", 90, 90},
    {"", "IntervalMin", 15, 15},
    {"", "FeedbackMs", 5000, 5000},
    {"", "DelayMs", 5000, 5000},
    {"", "ChangeWindow", 5000, 5000},
    {"", "MaxChanges", 10, 10},
    {"", "SampleInterval", 2e9, 2e9},  // a measurement starts four shells: not what is timed here
};

double value_of(std::string_view block, std::string_view pin, bool odd) {
  if (pin.size() > 1 && (pin[0] == 'X' || pin[0] == 'Y') && pin[1] <= '9')
    return 20.0 * (pin[1] - '0');  // breakpoints of a curve
  for (const Setting& setting : kSettings)
    if (setting.pin == pin && (setting.block.empty() || setting.block == block))
      return odd ? setting.odd : setting.even;
  return 1;
}

}  // namespace

void set_inputs(const scanblocks::BlockInfo& block, bool odd, std::span<Pin> pins) {
  for (std::size_t i = 0; i < block.inputs.size(); ++i)
    pins[SCANBLOCKS_FIRST_VALUE + i].Value = value_of(block.name, block.inputs[i].name, odd);
}
