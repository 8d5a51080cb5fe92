// Blocks of another library, declared in the program: a tank of examples/plant, which goes through
// all of that library.
#include <filesystem>

#include "tests/support/scanhost.h"

TEST(Types, ATankFillsFromItsOwnPreviousLevel) {
  Host host;
  std::filesystem::copy(PLANT_LIBRARY, host.directory() / "libplant.so");
  host.write("p.toml", R"(
[program]
scan = "1s"
[types.Basin]
library = "libplant.so"
symbol  = "Tank"
inputs  = ["LevelOld", "StartedOld", "StartM", "InflowM3h", "OutflowM3h", "AreaM2", "HeightM", "FloatM", "Seconds"]
outputs = ["Level", "Overflow", "Dry", "Started"]
[[block]]
name = "B"
type = "Basin"
in   = { LevelOld = "B.Level", StartedOld = "B.Started", StartM = 1, AreaM2 = 2, HeightM = 3, InflowM3h = 3600, Seconds = 1 }
[trace]
record = ["B.Level", "B.Overflow"]
)");
  const Host::Result result = host.run("simulate p.toml --start 2024-01-01 --cycles 6");
  EXPECT_EQ(result.out,
            "time,B.Level,B.Overflow\n"
            "2024-01-01T00:00:00.000+01:00,1.5,0\n"
            "2024-01-01T00:00:01.000+01:00,2,0\n"
            "2024-01-01T00:00:02.000+01:00,2.5,0\n"
            "2024-01-01T00:00:03.000+01:00,3,0\n"
            "2024-01-01T00:00:04.000+01:00,3,3600\n"
            "2024-01-01T00:00:05.000+01:00,3,3600\n")
      << result.err;
}
