// scanhost test: what holds, what does not, and what cannot be expected.
#include <gtest/gtest.h>

#include "tests/support/scanhost.h"

namespace {

// Lines 1 to 8; the drive is started by the rising edge in the second scan.
const std::string kProgram = R"([program]
scan = "1s"
[signals]
Go = { csv = "go.csv" }
[[block]]
name = "Pump"
type = "Drive1V2"
in   = { Enable = 1, Permit = 1, Auto = 1, AStSp = "Go", FeedbackMs = 4000 }
)";

struct Mistake {
  const char* lines;  // from line 9 on
  const char* message;
};

const Mistake kMistakes[] = {
    {"[[expect]]\nat = \"1s\"\n\"Pump.Stat\" = 2",
     "11:1: Drive1V2 'Pump' has no output 'Stat'; did"},
    {"[[expect]]\nat = \"1s\"\nPump.Sta = 2", "11:6: Drive1V2 'Pump' has no output 'Sta'"},
    {"[[expect]]\nat = \"1s\"\n\"Pump.State\" = \"runing\"",
     "11:16: 'Pump.State' has no state 'runing'; did you mean 'running'?"},
    {"[[expect]]\nat = \"1s\"\n\"Pump.CMD\" = \"on\"",
     "11:14: 'Pump.CMD' has no states with names"},
    {"[[expect]]\nat = \"1s\"\nGo = { min = 2, max = 1 }", "11:6: min is above max"},
    {"[[expect]]\nat = \"1s\"\nGo = { value = 2, max = 1 }", "11:6: the range of 'Go' is not"},
    {"[[expect]]\nat = \"1s\"\nGo = { low = 1 }", "11:8: the range of 'Go' has no key 'low'"},
    {"[[expect]]\nat = \"soon\"\nGo = 1", "10:6: 'soon' is no duration"},
    {"[[expect]]\nGo = 1", "9:1: the expectation has no 'at'"},
    {"[[expect]]\nat = \"1s\"", "9:1: the expectation names no value"},
    {"[test]\nstart = \"noon\"", "10:9: 'noon' is no time"},
};

}  // namespace

TEST(Expectations, AreHeldAgainstTheSimulatedProgram) {
  Host host;
  host.write("go.csv", "s,go\n0,0\n1,1\n");
  host.write("p.toml", kProgram + R"([[expect]]
at = "6s"
name = "no <contact>"
"Pump.State" = "running"
Pump.StartAlm = 0
Go = { min = 1, max = 1 }
[[expect]]
at = "1s"
tolerance = 0.5
"Pump.State" = "starting"
"Pump.CMD" = 1.5
)");
  for (int i = 0; i < 2; ++i) {  // the second time is like the first: no state is left
    const Host::Result result = host.run("test p.toml --junit r.xml");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "p: 1 passed, 1 failed\n");
    EXPECT_EQ(result.err,
              "p.toml:12:1: after 6s Pump.State is 5 (start failed); expected 2 (running)\n"
              "p.toml:13:6: after 6s Pump.StartAlm is 1; expected 0\n");
  }
  const std::string report = host.read("r.xml");
  EXPECT_NE(report.find("tests=\"2\" failures=\"1\""), std::string::npos) << report;
  EXPECT_NE(report.find("name=\"at 6s: no &lt;contact>\"><failure message=\"p.toml:12:1:"),
            std::string::npos)
      << report;
  EXPECT_FALSE(std::filesystem::exists(host.directory() / "state"));
  host.write("p.toml", kProgram);
  EXPECT_EQ(host.run("test p.toml").status, 2);
}

TEST(Expectations, EveryMistakeIsNamedWithItsPlace) {
  Host host;
  host.write("go.csv", "s,go\n0,0\n");
  for (const Mistake& mistake : kMistakes) {
    host.write("p.toml", kProgram + mistake.lines);
    const Host::Result result = host.run("check p.toml");
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find(std::string("p.toml:") + mistake.message), std::string::npos)
        << mistake.message << "\nis not in\n"
        << result.err;
  }
}
