// Blocks of another library, declared in the program: those of examples/plant.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/scanhost.h"

namespace {

// The last row of the trace of `record` after `seconds` scans of 1 s, without its time.
std::string last_row(const std::string& type, const std::string& in, const std::string& record,
                     int seconds) {
  Host host;
  std::filesystem::copy(PLANT_LIBRARY, host.directory() / "libplant.so");
  host.write("p.toml", "[program]\nscan = \"1s\"\n[types.X]\nlibrary = \"libplant.so\"\n" + type +
                           "\n[[block]]\nname = \"B\"\ntype = \"X\"\nin = { Seconds = 1, " + in +
                           " }\n[trace]\nrecord = [" + record + "]\n");
  const Host::Result result = host.run("simulate p.toml --cycles " + std::to_string(seconds));
  EXPECT_EQ(result.err.find("p: "), 0u) << result.err;
  const std::size_t row = result.out.rfind('\n', result.out.size() - 2) + 1;
  return result.out.substr(result.out.find(',', row) + 1);
}

const std::string kTank =
    "symbol = \"Tank\"\ninputs = [\"LevelOld\", \"StartedOld\", \"StartM\", \"InflowM3h\", "
    "\"OutflowM3h\", \"AreaM2\", \"HeightM\", \"FloatM\", \"Seconds\"]\n"
    "outputs = [\"Level\", \"Overflow\", \"Dry\", \"Started\"]";
const std::string kMotor =
    "symbol = \"Motor\"\ninputs = [\"SpeedOld\", \"Command\", \"Failure\", \"RunUpSec\", "
    "\"RunDownSec\", \"Seconds\"]\noutputs = [\"Speed\", \"Running\"]";
const std::string kLag =
    "symbol = \"Lag\"\ninputs = [\"QOld\", \"D1Old\", \"D2Old\", \"D3Old\", \"D4Old\", \"Input\", "
    "\"Gain\", \"LagSec\", \"DeadSec\", \"Seconds\"]\n"
    "outputs = [\"Q\", \"D1\", \"D2\", \"D3\", \"D4\"]";

}  // namespace

TEST(Types, ATankFillsFromItsOwnPreviousLevel) {
  const std::string in =
      "LevelOld = \"B.Level\", StartedOld = \"B.Started\", StartM = 1, AreaM2 = 2, HeightM = 3, "
      "FloatM = 0.5, ";
  const std::string pins = "\"B.Level\", \"B.Overflow\", \"B.Dry\"";
  EXPECT_EQ(last_row(kTank, in + "InflowM3h = 3600", pins, 1), "1.5,0,0\n");
  EXPECT_EQ(last_row(kTank, in + "InflowM3h = 3600", pins, 6), "3,3600,0\n");
  EXPECT_EQ(last_row(kTank, in + "OutflowM3h = 1800", pins, 9), "0,0,1\n");
}

TEST(Types, AMotorRunsUpAndFails) {
  const std::string in = "SpeedOld = \"B.Speed\", RunUpSec = 4, RunDownSec = 8, ";
  const std::string pins = "\"B.Speed\", \"B.Running\"";
  EXPECT_EQ(last_row(kMotor, in + "Command = 1", pins, 1), "0.25,0\n");
  EXPECT_EQ(last_row(kMotor, in + "Command = 1", pins, 2), "0.5,1\n");
  EXPECT_EQ(last_row(kMotor, in + "Command = 1, Failure = 1", pins, 9), "0,0\n");
  EXPECT_EQ(last_row(kMotor, in + "Failure = 2", pins, 9), "1,1\n");
}

TEST(Types, ALagHasItsHalfAboutTheDeadTime) {
  const std::string in =
      "QOld = \"B.Q\", D1Old = \"B.D1\", D2Old = \"B.D2\", D3Old = \"B.D3\", D4Old = \"B.D4\", "
      "Input = 1, Gain = 100, DeadSec = 400";
  const auto after = [&](int scans) { return std::stod(last_row(kLag, in, "\"B.Q\"", scans)); };
  EXPECT_LT(after(100), 3);
  EXPECT_NEAR(after(369), 50, 1);
  EXPECT_NEAR(after(670), 90, 1);
}
