// scanhost test: holds a program against its own expectations, on the simulated clock and with
// memory of its own.
#include <algorithm>
#include <cstdio>

#include "host/clock.h"
#include "host/commands/commands.h"
#include "host/expectations.h"
#include "host/library.h"
#include "host/report_file.h"
#include "host/scan.h"
#include "host/state_dir.h"
#include "host/stop.h"

namespace scanhost {
namespace {

struct Case {
  std::string name;
  std::string failures{};  // one line for each
};

std::string escaped(const std::string& text) {
  std::string xml;
  for (const char c : text) {
    if (c == '&')
      xml += "&amp;";
    else if (c == '<')
      xml += "&lt;";
    else if (c == '"')
      xml += "&quot;";
    else if (c == '\n')
      xml += "&#10;";
    else
      xml += c;
  }
  return xml;
}

void write_junit(const std::string& path, const std::string& suite, const std::vector<Case>& cases,
                 std::size_t failed) {
  std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"" +
                    escaped(suite) + "\" tests=\"" + std::to_string(cases.size()) +
                    "\" failures=\"" + std::to_string(failed) + "\">\n";
  for (const Case& one : cases) {
    xml += "  <testcase classname=\"" + escaped(suite) + "\" name=\"" + escaped(one.name) + "\"";
    xml += one.failures.empty()
               ? "/>\n"
               : "><failure message=\"" + escaped(one.failures) + "\"/></testcase>\n";
  }
  xml += "</testsuite>\n";
  write_report(path, xml);
}

Case compare(const Expectation& expectation, const Program& program, const Scan& scan) {
  const std::string time = format_duration(expectation.after);
  Case result{.name = "at " + time + (expectation.name.empty() ? "" : ": " + expectation.name)};
  for (const Expectation::Wanted& wanted : expectation.values) {
    const double value = *scan.value(wanted.from);
    if (value >= wanted.min && value <= wanted.max) continue;
    result.failures += program.path + ":" + std::to_string(wanted.at.line) + ":" +
                       std::to_string(wanted.at.column) + ": after " + time + " " + wanted.name +
                       " is " + value_text(program, wanted.from, value) + "; expected " +
                       wanted.text + "\n";
  }
  return result;
}

}  // namespace

int test(const TestOptions& options) {
  Program program = read_program(options.program);
  if (program.expectations.empty())
    throw Rejection(program.path +
                    ": the program expects nothing; add [[expect]] with at = \"10s\" and "
                    "\"Block.Pin\" = 1\n");
  load_functions(program, options.library);
  if (!options.junit.empty()) check_report(program, options.junit);
  // Never the present: the test has to give the same every day.
  Time start = *parse_time("2024-01-01");
  if (const auto recorded = recorded_start(program)) start = *recorded;
  if (program.test_start) start = *program.test_start;
  if (options.start) start = *options.start;

  std::vector<const Expectation*> order;
  for (const Expectation& expectation : program.expectations) order.push_back(&expectation);
  std::ranges::stable_sort(order, {}, &Expectation::after);
  const StateDir state = StateDir::temporary();
  catch_stop_signals();
  Scan scan(program, {.state_dir = state.path(), .write_outputs = false});
  std::vector<Case> cases;
  std::size_t failed = 0;
  for (Duration elapsed{}; cases.size() < order.size(); elapsed += program.scan) {
    if (stop_requested()) throw Failure("stopped before the end of the test");
    set_simulated_clock(start + elapsed);
    scan.step({.now = start + elapsed, .elapsed = elapsed});
    for (; cases.size() < order.size() && order[cases.size()]->after <= elapsed;) {
      cases.push_back(compare(*order[cases.size()], program, scan));
      std::fputs(cases.back().failures.c_str(), stderr);
      failed += !cases.back().failures.empty();
    }
  }
  if (!options.junit.empty()) write_junit(options.junit, program.name, cases, failed);
  std::printf("%s: %zu passed, %zu failed\n", program.name.c_str(), cases.size() - failed, failed);
  return failed > 0 ? 1 : 0;
}

}  // namespace scanhost
