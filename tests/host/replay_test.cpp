// scanhost replay: a recorded trace against the same program, and against one that differs.
#include "tests/support/scanhost.h"

namespace {

const char* const kProgram = R"([program]
scan = "1s"
group = "G"
[signals]
Flow = { csv = "flow.csv" }
[[block]]
name = "Span"
type = "Scale"
in   = { Enable = "Flow.ok", InSignal = "Flow", InMax = 100, OutMax = 100 }
[[block]]
name = "Late"
type = "DAlarm"
in   = { Enable = 1, InSignal = "Flow.ok", DelaySec = 7 }
[trace]
record = ["Flow", "Flow.ok", "Span.Q", "Late.AlmQ"]
every  = "5s"
)";

}  // namespace

TEST(Replay, AgreesWithItsOwnTraceAndShowsTheFirstDifference) {
  Host host(kProgram);
  host.write("flow.csv", "s,flow\n0,10\n5,20\n10,\n15,40\n");
  ASSERT_EQ(host.run("simulate p.toml --start 2024-01-01 --for 30s --trace t.csv").status, 0);
  host.write("flow.csv", "s,flow\n0,99\n");
  const Host::Result same = host.run("replay t.csv p.toml");
  EXPECT_EQ(same.out, "p: 26 scans, 6 rows with 2 pins as recorded\n") << same.err;
  EXPECT_EQ(same.status, 0);

  std::string trace = host.read("t.csv");
  trace.replace(trace.find(",40,1,40,"), 9, ",40,1,41,");
  host.write("t.csv", trace);
  const Host::Result other = host.run("replay t.csv p.toml");
  EXPECT_EQ(other.status, 1);
  const std::size_t first = other.err.find("t.csv: first");
  ASSERT_NE(first, std::string::npos) << other.err;
  EXPECT_EQ(other.err.substr(first),
            "t.csv: first difference in scan 16, 2024-01-01T00:00:15.000+01:00\n"
            "  Span.Q is 40; recorded 41\n"
            "    Scale Span, line 7\n"
            "      Enable = 1 from Flow.ok\n"
            "      InSignal = 40 from Flow\n");
  EXPECT_EQ(host.run("replay t.csv p.toml --tolerance 1").status, 0);

  host.write("u.csv", "time,Flow,Spam.Q\n2024-01-01T00:00:00,1,1\n");
  const Host::Result unknown = host.run("replay u.csv p.toml");
  EXPECT_EQ(unknown.status, 2);
  EXPECT_EQ(unknown.err.find("u.csv:1: the wire 'Spam.Q' leads to nothing"), 0u) << unknown.err;
  EXPECT_EQ(host.run("replay none.csv p.toml").status, 2);
}
