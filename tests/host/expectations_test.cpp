// scanhost test: what holds and what does not.
#include "tests/support/scanhost.h"

namespace {

// The drive is started by the rising edge in the second scan.
const std::string kProgram = R"([program]
scan = "1s"
[signals]
Go = { csv = "go.csv" }
[[block]]
name = "Pump"
type = "Drive1V2"
in   = { Enable = 1, Permit = 1, Auto = 1, AStSp = "Go", FeedbackMs = 4000 }
)";

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
  EXPECT_TRUE(has(report, "tests=\"2\" failures=\"1\""));
  EXPECT_TRUE(has(report, "name=\"at 6s: no &lt;contact>\"><failure message=\"p.toml:12:1:"));
  EXPECT_FALSE(std::filesystem::exists(host.directory() / "state"));
  host.write("p.toml", kProgram);
  EXPECT_EQ(host.run("test p.toml").status, 2);
}
