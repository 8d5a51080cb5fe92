// What is wrong with a program is said with its place and what would be right.
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <regex>
#include <sstream>

#include "tests/support/scanhost.h"

namespace {

// Lines 1 to 10 of every program.
const std::string kStart = R"([program]
scan = "1s"
[[block]]
name = "Loop"
type = "PID"
[[block]]
name = "Run"
type = "Drive1V2"
[signals]
Level = { file = "level" }
)";

// A line is what follows in the program, with ';' between its lines, and what is said of it.
const char* const kMistakes = R"(
Flow = { csv = "recorded.csv", column = "m3" } -> 11:41: 'recorded.csv' has no column 'm3'; did you mean 'm3h'?
Flow = { csv = "none.csv" } -> 11:16: 'none.csv' cannot be read: No such file or directory
Flow = { csv = "." } -> 11:16: '.' cannot be read: Is a directory
Flow = { csv = "bad.csv" } -> bad.csv:3: 'x' is no number; write one with a decimal point
Flow = { csv = "back.csv" } -> back.csv:3: the time '1' lies before that of the row above
Flow = { csv = "mixed.csv" } -> mixed.csv:3: '2024-01-01' is no time like that of the
Flow = { fill = "x" } -> 11:10: signal 'Flow' has no key 'fill'; did you mean 'file'?
Flow = { file = "x", value = 1 } -> 11:1: signal 'Flow' has several sources; give one of
Flow = { file = "x", on_error = "last" } -> 11:33: 'on_error' is neither "keep" nor
Flow = 3 -> 11:8: signal 'Flow' is a number; write a table: Flow = { value = 0 }
Level = { value = 1 } -> 11:9: cannot redefine existing table 'Level'; each name stands once
[[block]] ; name = "B" ; type = "Scael" -> 13:8: there is no block type 'Scael'; did you mean 'Scale'?
[[block]] ; type = "PID" -> 11:1: the block has no 'name'; add one: name = "Level"
[[block]] ; name = "Loop" ; type = "PID" -> 12:8: block 'Loop' would share its state file PID__Loop.dat with that of line 4
[[block]] ; name = "a/b" ; type = "PID" -> 12:8: the name 'a/b' has a '/' or a control
[[block]] ; name = "0123456789012345678901234567890123456789012345678901234567890123" -> 12:8: the name has 64 characters, blocks take at most 63; shorten it
[[block]] ; name = "B" ; type = "PID" ; in = { Enabel = 1 } -> 14:8: PID has no input 'Enabel'; did you mean 'Enable'?
[[block]] ; name = "B" ; type = "PID" ; in = { Kp = 1, Kp = 2 } -> 14:21: cannot redefine existing integer 'Kp'; each name stands once
[[block]] ; name = "B" ; type = "PID" ; in = { Kp = "Looop.Q" } -> 14:13: the wire 'Looop.Q' leads to nothing: there is no block or signal 'Looop'; did you mean 'Loop'?
[[block]] ; name = "B" ; type = "PID" ; in = { Kp = "Loop.X" } -> 14:13: PID 'Loop' has no output 'X'; there are 'Q', 'V'
[[block]] ; name = "B" ; type = "PID" ; in = { Kp = "Loop.Bias" } -> 14:13: 'Bias' is an input of PID 'Loop'; there are 'Q', 'V'
[[block]] ; name = "B" ; type = "PID" ; in = { Kp = "Loop" } -> 14:13: the wire 'Loop' names a block without a pin; write "Loop.Q"
[[block]] ; name = "Loop" ; type = "PID" ; group = "G" ; [outputs] ; O = { from = "Loop.Q", file = "o" } ; [[block]] ; name = "Loop" ; type = "PID" ; group = "H" ; in = { Kp = "Loop.Q" } ; [trace] ; record = ["I/Loop.Q"] -> 23:11: the wire 'I/Loop.Q' leads to nothing
[outputs] ; Valve = { from = "Level.okay", file = "v" } -> 12:18: the wire 'Level.okay' le
[outputs] ; Valve = { from = "Level", file = "v", safe = nan } -> 12:46: the safe value is not
[outputs] ; Valve = { from = "Level", file = "p.toml" } -> 12:34: the output would overwrite
[outputs] ; Valve = { from = "Level" } -> 12:1: output 'Valve' has no 'file'; add one: file
[outputs] ; A = { from = "Level", file = "v" } ; B = { from = "Level", file = "v" } -> 13:30: output 'A' writes the same file; give each output a file of its own
[trace] ; every = "36501d" -> 12:9: 'every' of [trace] is "36501d", which is no positive dur
[trace] ; every = "0s" -> 12:9: 'every' of [trace] is "0s", which is no positive duration
[trace] ; record = ["Level"] ; units = { Lvel = "m" } -> 13:11: 'record' has no 'Lvel'; name
[types.Scale] ; library = "x.so" ; outputs = ["Q"] -> 11:8: 'Scale' is a block of the catalogue; give the type another name
[types.T] ; outputs = ["Q", "Q"] -> 11:8: type 'T' has no 'library'; add one: library = "libplant.so"
[types.T] ; library = "x.so" ; outputs = ["Q", "Q"] -> 13:17: 'outputs' has the pin 'Q' twice
[[block]] ; name = "B" ; type = "T" ; in = { X = 1 } ; [types.T] ; library = "x.so" ; outputs = ["Q"] -> 14:8: T has no input 'X'; [types.T] lists them
[[block]] ; name = "B" ; type = "T" ; [types.T] ; library = "./x.so" ; outputs = ["Q"] -> 15:11: 
[[block]] ; name = "B" ; type = "T" ; [types.T] ; library = "libplant.so" ; outputs = ["Q"] -> 15:11: the library has no function 'T'; name the exported one: symbol = 
[[expect]] ; at = "1s" ; "Run.Stat" = 2 -> 13:1: Drive1V2 'Run' has no output 'Stat'; did
[[expect]] ; at = "1s" ; Run.Sta = 2 -> 13:5: Drive1V2 'Run' has no output 'Sta'
[[expect]] ; at = "1s" ; "Run.State" = "runing" -> 13:15: 'Run.State' has no state 'runing'; did you mean 'running'?
[[expect]] ; at = "1s" ; "Run.CMD" = "on" -> 13:13: 'Run.CMD' has no states with names
[[expect]] ; at = "1s" ; Level = { min = 2, max = 1 } -> 13:9: min is above max
[[expect]] ; at = "1s" ; Level = { value = 2, max = 1 } -> 13:9: the range of 'Level' is not
[[expect]] ; at = "1s" ; Level = { low = 1 } -> 13:11: the range of 'Level' has no key 'low'
[[expect]] ; at = "1s" ; tolerance = -1 ; Level = 1 -> 13:13: the tolerance is -1; write 0 or
[[expect]] ; at = "soon" ; Level = 1 -> 12:6: 'soon' is no duration
[[expect]] ; Level = 1 -> 11:1: the expectation has no 'at'
[[expect]] ; at = "1s" -> 11:1: the expectation names no value
[test] ; start = "noon" -> 12:9: 'noon' is no time
[tracer] -> 11:2: the program has no key 'tracer'; did you mean 'trace'?
)";

}  // namespace

TEST(Program, EveryMistakeIsNamedWithItsPlace) {
  Host host;
  host.write("recorded.csv", "time,m3h\n0,1\n");
  host.write("bad.csv", "time,m3h\n0,1\n1,x\n");
  host.write("back.csv", "time,m3h\n2,1\n1,2\n");
  host.write("mixed.csv", "time,m3h\n2,1\n2024-01-01,2\n");
  host.write("p.toml", kStart);
  EXPECT_EQ(host.run("check p.toml").out, "ok\n");
  std::filesystem::copy(PLANT_LIBRARY, host.directory() / "libplant.so");
  std::istringstream lines(kMistakes + 1);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t arrow = line.find(" -> ");
    const std::string program = line.substr(0, arrow), message = line.substr(arrow + 4);
    host.write("p.toml", kStart + std::regex_replace(program, std::regex(" ; "), "\n"));
    const Host::Result result = host.run("check p.toml");
    EXPECT_EQ(result.status, 2) << program;
    EXPECT_TRUE(has("\n" + result.err, (std::isdigit(message[0]) ? "\np.toml:" : "\n") + message));
  }
}

TEST(Program, CheckReportsAllMistakesAndMakesNothing) {
  Host host("[program]\nscan = \"0s\"\nstate = \"" + std::string(64, 's') +
            "\"\npriority = 100\n[[block]]\nname = \"A\"\ntype = \"B\"\n");
  const Host::Result result = host.run("check p.toml");
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(has(result.err, "p.toml:2:8: 'scan' of [program] is \"0s\""));
  EXPECT_TRUE(has(result.err, "p.toml:3:9: the state directory '"));
  EXPECT_TRUE(has(result.err, "has 64 characters, blocks take at most 63"));
  EXPECT_TRUE(has(result.err, "p.toml:4:12: 'priority' of [program] is 100"));
  EXPECT_TRUE(has(result.err, "p.toml:7:8: there is no block type 'B'"));
  EXPECT_EQ(std::ranges::count(result.err, '\n'), 4) << result.err;

  EXPECT_EQ(host.run("check none.toml").err.find("none.toml: cannot be read: No such file"), 0u);
  EXPECT_EQ(host.run("check p.toml --library nothing.so").status, 2);
  host.write("p.toml", kStart);
  EXPECT_EQ(host.run("check p.toml").status, 0);
  EXPECT_FALSE(std::filesystem::exists(host.directory() / "state"));
  EXPECT_EQ(host.run("check p.toml --library nothing.so").status, 1);
}

TEST(Program, TheCommandLineIsCheckedToo) {
  Host host;
  for (const char* arguments :
       {"", "rnu", "run", "simulate p.toml --for 3", "blocks PIT", "simulate p.toml --start noon",
        "run p.toml --cycles 0", "run p.toml --cycles 5 --for 1s"}) {
    const Host::Result result = host.run(arguments);
    EXPECT_EQ(result.status, 2) << arguments;
    EXPECT_EQ(result.err.find("scanhost: "), 0u) << result.err;
  }
  EXPECT_EQ(host.run("blocks PIT").err, "scanhost: there is no block 'PIT'; did you mean 'PID'?\n");
}

// Every block of the catalogue is listed, with every pin, key and state that its tables have.
TEST(Reference, ComesFromTheTables) {
  Host host;
  const std::string list = host.run("blocks").out;
  const std::string pages = host.run("blocks --markdown").out;
  for (const scanblocks::BlockInfo* block : scanblocks::catalogue_of_blocks()) {
    EXPECT_TRUE(has(list, std::string(block->name) + " "));
    EXPECT_TRUE(has(pages, std::string("# ") + block->name + "\n"));
  }
  const std::string page = host.run("blocks PID --markdown").out;
  EXPECT_TRUE(has(page, "| 9 | `Ki` | number | 1/s | gain of the integral |\n"));
  EXPECT_TRUE(has(page, "| `pidQ` | number, six decimals |  | Q of this call; not read back |\n"));
  const std::string text = host.run("blocks Drive1").out;
  EXPECT_TRUE(has(text, "\nstates\n  "));
}
