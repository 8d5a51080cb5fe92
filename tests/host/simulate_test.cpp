// The scan on a simulated clock: order of the wires, signals, trace, determinism.
#include "tests/support/scanhost.h"

namespace {

// Scale as an adder: Q = InSignal + OutMin in a wide range.
const char* const kCounter = R"(
[program]
scan = "500ms"
group = "G"
[signals]
Flow  = { csv = "flow.csv", column = "m3h" }
Gone  = { file = "gone", on_error = "zero" }
Seven = { file = "gone", on_error = 7 }
Live  = { file = "live" }
[[block]]
name = "First"
type = "Scale"
in   = { Enable = true, InSignal = "Later.Q", InMax = 100, OutMax = 100 }
[[block]]
name = "Later"
type = "Scale"
in   = { Enable = 1, InSignal = "First.Q", InMax = 100, OutMin = 1, OutMax = 101 }
[outputs]
Out = { from = "First.Q", file = "out", safe = -1 }
[trace]
record = ["Flow", "Flow.ok", "Gone", "Seven.ok", "Seven", "Live", "First.Q", "Later.InSignal", "Later.Q"]
every  = "1s"
)";

}  // namespace

// A wire from a block further down carries the value of the previous scan: First counts the scans.
// Recorded values hold, an empty field is none; the trace crosses the change to summer time.
TEST(Simulate, GivesTheSameTraceEveryTime) {
  Host host(kCounter);
  host.write("live", "t: 21.5 C\n");
  host.write("flow.csv",
             "time,x,\"m3h\"\r\n2024-03-31T00:59:58Z,0,4\r\n2024-03-31 "
             "03:00:00,0,\r\n2024-03-31T01:00:01.5Z,0,-0.25\r\n");
  const std::string expected =
      "time,Flow,Flow.ok,Gone,Seven.ok,Seven,Live,First.Q,Later.InSignal,Later.Q\n"
      "2024-03-31T01:59:57.000+01:00,0,0,0,0,7,21.5,0,0,1\n"
      "2024-03-31T01:59:58.000+01:00,4,1,0,0,7,21.5,2,2,3\n"
      "2024-03-31T01:59:59.000+01:00,4,1,0,0,7,21.5,4,4,5\n"
      "2024-03-31T03:00:00.000+02:00,4,0,0,0,7,21.5,6,6,7\n"
      "2024-03-31T03:00:01.000+02:00,4,0,0,0,7,21.5,8,8,9\n"
      "2024-03-31T03:00:02.000+02:00,-0.25,1,0,0,7,21.5,10,10,11\n";
  const Host::Result first = host.run("simulate p.toml --start 2024-03-31T01:59:57 --for 5.2s");
  EXPECT_EQ(first.out, expected);
  EXPECT_EQ(first.status, 0);
  EXPECT_EQ(first.err,
            "signal Flow: flow.csv: no value recorded yet; the last value is kept\n"
            "signal Gone: gone: No such file or directory; the value of on_error is taken\n"
            "signal Seven: gone: No such file or directory; the value of on_error is taken\n"
            "signal Flow: flow.csv: can be read again\n"
            "signal Flow: flow.csv: no value recorded for this time; the last value is kept\n"
            "signal Flow: flow.csv: can be read again\n"
            "p: 11 scans of 500ms in simulated time\n");
  const Host::Result second =
      host.run("simulate p.toml --start 2024-03-31T00:59:57Z --cycles 11 --trace t.csv");
  EXPECT_EQ(host.read("t.csv"), expected);
  EXPECT_EQ(second.out, "p: 11 scans of 500ms in simulated time\n");
  EXPECT_EQ(host.read("out"), "");  // outputs are written only when asked for
  EXPECT_FALSE(std::filesystem::exists(host.directory() / "state"));
}

// Blocks see the simulated clock, and --state keeps their memory from one simulation to the next.
TEST(Simulate, MovesTheClockOfTheBlocks) {
  Host host(R"(
    [program]
    scan = "1m"
    [signals]
    In = { csv = "in.csv" }
    [[block]]
    name = "Delay"
    type = "DAlarm"
    in   = { Enable = 1, InSignal = "In", DelaySec = 3600 }
    [outputs]
    Alarm = { from = "Delay.AlmQ", file = "alarm", safe = 5 }
    [trace]
    record = ["Delay.AlmQ"]
    every  = "30m"
  )");
  host.write("in.csv", "s,in\n0,0\n60,1\n3600,1\n");
  EXPECT_EQ(host.run("simulate p.toml --state kept --outputs --start 2024-01-01").out,
            "time,Delay.AlmQ\n2024-01-01T00:00:00.000+01:00,0\n2024-01-01T00:30:00.000+01:00,0\n"
            "2024-01-01T01:00:00.000+01:00,0\n");
  EXPECT_EQ(host.read("alarm"), "5\n");
  host.write("in.csv", "s,in\n0,1\n");
  const std::string kept = "simulate p.toml --state kept --cycles 1 --start ";
  EXPECT_EQ(host.run(kept + "2024-01-01T01:00:59").out,
            "time,Delay.AlmQ\n2024-01-01T01:00:59.000+01:00,0\n");
  EXPECT_EQ(host.run(kept + "2024-01-01T01:01").out,
            "time,Delay.AlmQ\n2024-01-01T01:01:00.000+01:00,1\n");
}

TEST(Simulate, ReportsATraceThatCannotBeWritten) {
  Host host("[program]\nscan = \"1s\"\n[[block]]\nname = \"A\"\ntype = \"Scale\"\n");
  EXPECT_EQ(host.run("simulate p.toml --cycles 1 --trace no/where.csv").status, 1);
  const Host::Result full = host.run("simulate p.toml --cycles 9 --trace /dev/full");
  EXPECT_EQ(full.status, 1);
  EXPECT_TRUE(has(full.err, "/dev/full: No space left on device; the trace ends here"));
  EXPECT_EQ(host.run("simulate p.toml --cycles 1 --trace p.toml").status, 2);
  for (const char* start : {"9999-12-31", "9999-12-31T23:00Z"})
    EXPECT_EQ(host.run(std::string("simulate p.toml --for 36500d --start ") + start).status, 2);
  EXPECT_EQ(host.run("simulate p.toml").err.find("scanhost: the program has no recorded values"),
            0u);
}
