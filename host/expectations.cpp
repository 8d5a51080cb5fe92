#include "host/expectations.h"

#include <cmath>
#include <limits>

#include "exports/catalogue.h"
#include "host/number.h"
#include "host/wiring.h"

namespace scanhost {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string number_text(double value) {
  char text[kNumberSize];
  return {text, format_number(value, text)};
}

// The states that the values of a pin stand for; none for a pin that is no state.
std::span<const scanblocks::StateName> states_of(const Program& program, const Source& source) {
  if (source.kind != Source::Kind::kOutput) return {};
  const BlockType& type = *program.blocks[source.index].type;
  const scanblocks::BlockInfo* block =
      type.library.empty() ? scanblocks::find_block(type.name) : nullptr;
  if (block == nullptr || source.pin >= block->outputs.size() ||
      block->outputs[source.pin].kind != scanblocks::Kind::kState)
    return {};
  return block->states;
}

class ExpectationReader {
 public:
  ExpectationReader(const std::string& group, Program& program, Problems& problems)
      : group_(group), program_(program), problems_(problems) {}

  void read_test(const Value& table) {
    Section section(table, table.at, "[test]", problems_);
    if (const auto start = section.text("start")) {
      program_.test_start = parse_time(*start);
      if (!program_.test_start)
        problems_.add(section.entry("start").value.at, "'" + *start + "' is no time",
                      std::string("write one, ") + kTimeExamples);
    }
    section.finish();
  }

  void read_expect(const Value& table) {
    if (!table.is_table()) {
      problems_.add(table.at, std::string("an expectation is ") + kind_name(table.kind),
                    "write [[expect]] with at = \"10s\" and \"Block.Pin\" = 1");
      return;
    }
    Expectation expectation{.at = table.at};
    Section section(table, table.at, "the expectation", problems_);
    section.require("at", "at = \"12m30s\"");
    if (const auto time = section.text("at")) {
      const std::optional<Duration> after = parse_duration(*time);
      if (!after)
        problems_.add(section.entry("at").value.at, "'" + *time + "' is no duration",
                      std::string("write a number with its unit, ") + kDurationExamples);
      expectation.after = after.value_or(Duration{});
    }
    tolerance_ = read_tolerance(section).value_or(0.0);
    expectation.name = section.text("name").value_or("");
    for (const Entry& entry : table.entries)
      if (entry.key != "at" && entry.key != "tolerance" && entry.key != "name")
        read_value(entry.key, entry, expectation);
    if (expectation.values.empty() && problems_.empty())
      problems_.add(table.at, "the expectation names no value", "add one: \"Block.Pin\" = 1");
    program_.expectations.push_back(std::move(expectation));
  }

 private:
  bool is_signal(const std::string& name) const {
    for (const SignalSpec& signal : program_.signals)
      if (signal.name == name) return true;
    return false;
  }

  std::optional<double> read_tolerance(Section& section) {
    const std::optional<double> tolerance = section.number("tolerance");
    if (!tolerance || *tolerance >= 0) return tolerance;
    problems_.add(section.entry("tolerance").value.at,
                  "the tolerance is " + number_text(*tolerance), "write 0 or more");
    return 0.0;
  }

  void read_value(const std::string& name, const Entry& entry, Expectation& expectation) {
    const Value& value = entry.value;
    // Without quotes Block.Pin is a table Block with a key Pin.
    if (value.is_table() && name.find('.') == std::string::npos && !is_signal(name)) {
      for (const Entry& pin : value.entries) read_value(name + "." + pin.key, pin, expectation);
      return;
    }
    const auto source = Wiring(program_, problems_).resolve(name, entry.at, group_, true);
    if (!source) return;
    Expectation::Wanted wanted{.name = name, .from = *source, .at = entry.at};
    if (value.is_number()) {
      about(wanted, value.number, tolerance_);
    } else if (value.is_text()) {
      read_state(wanted, value);
    } else if (value.is_table()) {
      read_range(wanted, value);
    } else {
      problems_.add(value.at, "the value of '" + name + "' is " + kind_name(value.kind),
                    "write a number, a state by name, or { min = 0, max = 1 }");
    }
    expectation.values.push_back(std::move(wanted));
  }

  void about(Expectation::Wanted& wanted, double value, double tolerance) {
    wanted.min = value - tolerance;
    wanted.max = value + tolerance;
    wanted.text = value_text(program_, wanted.from, value);
    if (tolerance > 0) wanted.text += " within " + number_text(tolerance);
  }

  void read_state(Expectation::Wanted& wanted, const Value& value) {
    std::vector<std::string> names;
    for (const scanblocks::StateName& state : states_of(program_, wanted.from)) {
      if (value.text == state.name) return about(wanted, state.number, 0.0);
      names.emplace_back(state.name);
    }
    if (names.empty())
      problems_.add(value.at, "'" + wanted.name + "' has no states with names", "write a number");
    else
      problems_.add(value.at, "'" + wanted.name + "' has no state '" + value.text + "'",
                    suggest(value.text, names, "write its number"));
  }

  void read_range(Expectation::Wanted& wanted, const Value& value) {
    Section section(value, value.at, "the range of '" + wanted.name + "'", problems_);
    const auto exact = section.number("value");
    const auto tolerance = read_tolerance(section);
    const auto min = section.number("min");
    const auto max = section.number("max");
    section.finish();
    if (exact.has_value() == (min || max) || (tolerance && !exact)) {
      problems_.add(
          value.at, "the range of '" + wanted.name + "' is not complete or ambiguous",
          "write { min = 0, max = 1 }, one of the two, or { value = 1, tolerance = 0.1 }");
      return;
    }
    if (exact) return about(wanted, *exact, tolerance.value_or(tolerance_));
    wanted.min = min.value_or(-kInfinity);
    wanted.max = max.value_or(kInfinity);
    if (wanted.min > wanted.max) problems_.add(value.at, "min is above max", "exchange the two");
    wanted.text = !max   ? "at least " + number_text(*min)
                  : !min ? "at most " + number_text(*max)
                         : number_text(*min) + " to " + number_text(*max);
  }

  const std::string& group_;
  Program& program_;
  Problems& problems_;
  double tolerance_ = 0.0;
};

}  // namespace

void read_expectations(Section& top, const std::string& group, Program& program,
                       Problems& problems) {
  ExpectationReader reader(group, program, problems);
  if (const Value* test = top.table("test")) reader.read_test(*test);
  if (const Value* list = top.list("expect"))
    for (const Value& item : list->items) reader.read_expect(item);
}

std::string value_text(const Program& program, const Source& source, double value) {
  std::string text = number_text(value);
  for (const scanblocks::StateName& state : states_of(program, source))
    if (value == state.number) text += std::string(" (") + state.name + ")";
  return text;
}

}  // namespace scanhost
