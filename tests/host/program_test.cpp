// What is wrong with a program is said with its place and what would be right.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

#include "tests/support/scanhost.h"

namespace {

// Lines 1 to 7 of every program.
const std::string kStart = R"([program]
scan = "1s"
[[block]]
name = "Loop"
type = "PID"
[signals]
Level = { file = "level" }
)";

struct Mistake {
  const char* lines;  // from line 8 on
  const char* message;
};

const Mistake kMistakes[] = {
    {"Flow = { csv = \"recorded.csv\", column = \"m3\" }",
     "8:41: 'recorded.csv' has no column 'm3'; did you mean 'm3h'?"},
    {"Flow = { csv = \"none.csv\" }", "8:16: 'none.csv' cannot be read: No such file or directory"},
    {"Flow = { csv = \"bad.csv\" }", "bad.csv:3: 'x' is no number; write one with a decimal point"},
    {"Flow = { csv = \"back.csv\" }", "back.csv:3: the time '1' lies before that of the row above"},
    {"Flow = { csv = \"mixed.csv\" }", "mixed.csv:3: '2024-01-01' is no time like that of the"},
    {"Flow = { fill = \"x\" }", "8:10: signal 'Flow' has no key 'fill'; did you mean 'file'?"},
    {"Flow = { file = \"x\", value = 1 }", "8:1: signal 'Flow' has several sources; give one of"},
    {"Flow = { file = \"x\", on_error = \"last\" }", "8:33: 'on_error' is neither \"keep\" nor"},
    {"Flow = 3", "8:8: signal 'Flow' is a number; write a table: Flow = { value = 0 }"},
    {"Level = { value = 1 }", "8:9: cannot redefine existing table 'Level'; each name stands once"},
    {"[[block]]\nname = \"B\"\ntype = \"Scael\"",
     "10:8: there is no block type 'Scael'; did you mean 'Scale'?"},
    {"[[block]]\ntype = \"PID\"", "8:1: the block has no 'name'; add one: name = \"Level\""},
    {"[[block]]\nname = \"Loop\"\ntype = \"PID\"",
     "9:8: block 'Loop' would share its state file PID__Loop.dat with that of line 4"},
    {"[[block]]\nname = \"a/b\"\ntype = \"PID\"", "9:8: the name 'a/b' has a '/' or a control"},
    {"[[block]]\nname = \"0123456789012345678901234567890123456789012345678901234567890123\"\n",
     "9:8: the name has 64 characters, blocks take at most 63; shorten it"},
    {"[[block]]\nname = \"B\"\ntype = \"PID\"\nin = { Enabel = 1 }",
     "11:8: PID has no input 'Enabel'; did you mean 'Enable'?"},
    {"[[block]]\nname = \"B\"\ntype = \"PID\"\nin = { Kp = 1, Kp = 2 }",
     "11:21: cannot redefine existing integer 'Kp'; each name stands once"},
    {"[[block]]\nname = \"B\"\ntype = \"PID\"\nin = { Kp = \"Looop.Q\" }",
     "11:13: the wire 'Looop.Q' leads to nothing: there is no block or signal 'Looop'; did you "
     "mean 'Loop'?"},
    {"[[block]]\nname = \"B\"\ntype = \"PID\"\nin = { Kp = \"Loop.X\" }",
     "11:13: PID 'Loop' has no output 'X'; there are 'Q', 'V'"},
    {"[[block]]\nname = \"B\"\ntype = \"PID\"\nin = { Kp = \"Loop.Bias\" }",
     "11:13: 'Bias' is an input of PID 'Loop'; there are 'Q', 'V'"},
    {"[[block]]\nname = \"B\"\ntype = \"PID\"\nin = { Kp = \"Loop\" }",
     "11:13: the wire 'Loop' names a block without a pin; write \"Loop.Q\""},
    {"[[block]]\nname = \"Loop\"\ntype = \"PID\"\ngroup = \"G\"\n[outputs]\nO = { from = "
     "\"Loop.Q\", file = \"o\" }\n[[block]]\nname = \"Loop\"\ntype = \"PID\"\ngroup = \"H\"\nin = "
     "{ Kp = \"Loop.Q\" }\n[trace]\nrecord = [\"I/Loop.Q\"]",
     "20:11: the wire 'I/Loop.Q' leads to nothing"},
    {"[outputs]\nValve = { from = \"Level.okay\", file = \"v\" }",
     "9:18: the wire 'Level.okay' le"},
    {"[outputs]\nValve = { from = \"Level\" }", "9:1: output 'Valve' has no 'file'; add one: file"},
    {"[outputs]\nA = { from = \"Level\", file = \"v\" }\nB = { from = \"Level\", file = \"v\" }",
     "10:30: output 'A' writes the same file; give each output a file of its own"},
    {"[trace]\nevery = \"0s\"", "9:9: 'every' of [trace] is \"0s\", which is no positive duration"},
    {"[trace]\nrecord = [\"Level\"]\nunits = { Lvel = \"m\" }",
     "10:11: 'record' has no 'Lvel'; name"},
    {"[types.Scale]\nlibrary = \"x.so\"\noutputs = [\"Q\"]",
     "8:8: 'Scale' is a block of the catalogue; give the type another name"},
    {"[types.T]\noutputs = [\"Q\", \"Q\"]",
     "8:8: type 'T' has no 'library'; add one: library = \"libplant.so\"\n"
     "p.toml:9:17: 'outputs' has the pin 'Q' twice"},
    {"[[block]]\nname = \"B\"\ntype = \"T\"\nin = { X = 1 }\n[types.T]\nlibrary = \"x.so\"\n"
     "outputs = [\"Q\"]",
     "11:8: T has no input 'X'; [types.T] lists them"},
    {"[[block]]\nname = \"B\"\ntype = \"T\"\n[types.T]\nlibrary = \"./x.so\"\noutputs = [\"Q\"]",
     "12:11: "},
    {"[[block]]\nname = \"B\"\ntype = \"T\"\n[types.T]\nlibrary = \"" PLANT_LIBRARY
     "\"\noutputs = [\"Q\"]",
     "12:11: the library has no function 'T'; name the exported one: symbol = "},
    {"[tracer]", "8:2: the program has no key 'tracer'; did you mean 'trace'?"},
};

}  // namespace

TEST(Program, EveryMistakeIsNamedWithItsPlace) {
  Host host;
  host.write("recorded.csv", "time,m3h\n0,1\n");
  host.write("bad.csv", "time,m3h\n0,1\n1,x\n");
  host.write("back.csv", "time,m3h\n2,1\n1,2\n");
  host.write("mixed.csv", "time,m3h\n2,1\n2024-01-01,2\n");
  host.write("p.toml", kStart);
  EXPECT_EQ(host.run("check p.toml").out, "ok\n");
  for (const Mistake& mistake : kMistakes) {
    host.write("p.toml", kStart + mistake.lines);
    const Host::Result result = host.run("check p.toml");
    const std::string place = std::isdigit(mistake.message[0]) ? "p.toml:" : "";
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(("\n" + result.err).find("\n" + place + mistake.message) != std::string::npos)
        << mistake.message << "\nis not in\n"
        << result.err;
  }
}

TEST(Program, CheckReportsAllMistakesAndMakesNothing) {
  Host host;
  host.write("p.toml", "[program]\nscan = \"0s\"\nstate = \"" + std::string(64, 's') +
                           "\"\npriority = 100\n[[block]]\nname = \"A\"\ntype = \"B\"\n");
  const Host::Result result = host.run("check p.toml");
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("p.toml:2:8: 'scan' of [program] is \"0s\""), std::string::npos);
  EXPECT_NE(result.err.find("p.toml:3:9: the state directory '"), std::string::npos);
  EXPECT_NE(result.err.find("has 64 characters, blocks take at most 63"), std::string::npos);
  EXPECT_NE(result.err.find("p.toml:4:12: 'priority' of [program] is 100"), std::string::npos);
  EXPECT_NE(result.err.find("p.toml:7:8: there is no block type 'B'"), std::string::npos);
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
    EXPECT_NE(list.find(std::string(block->name) + " "), std::string::npos);
    EXPECT_NE(pages.find(std::string("# ") + block->name + "\n"), std::string::npos);
  }
  const std::string page = host.run("blocks PID --markdown").out;
  EXPECT_NE(page.find("| 9 | `Ki` | number | 1/s | gain of the integral |\n"), std::string::npos);
  EXPECT_NE(page.find("| `pidQ` | number, six decimals |  | Q of this call; not read back |\n"),
            std::string::npos);
  const std::string text = host.run("blocks Drive1").out;
  EXPECT_NE(text.find("\nstates\n  "), std::string::npos) << text;
}
