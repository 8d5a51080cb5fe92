#include <gtest/gtest.h>

#include "tests/support/rig.h"

namespace {

const Values kTimes = {
    {"Enable", 1}, {"ChangeWindow", 1000}, {"MaxChanges", 3}, {"FreezTime", 5000}};

TEST(ChatterFilter, FreezesAtTheLastGoodValue) {
  trace("ChatterFilter", kTimes, R"(
    t      InSignal | Q V ChangeNum #clock | TmpTime       TmpQLastGood TmpFreezTime  TmpState
    0         1     | 1 0    1        2    | 1700000000000      0       0                0     0 came before the first
    0.1       0.9   | 0 0    2        2    | 1700000000000      0       0                0
    0.2       1.2   | 1 0    3        2    | 1700000000000      0       0                0
    1         1     | 1 0    3        2    | 1700000000000      0       0                0     the last of the window
    1.001     0     | 0 0    3        3    | 1700000000000      0       1700000001001    1     V comes one call later
    1.002     1     | 0 1    3        2    | 1700000000000      0       1700000001001    1
    6.001     1     | 0 1    3        2    | 1700000000000      0       1700000001001    1
    6.002     1     | 0 0    0        3    | 1700000006002      0       1700000001001    0     still the frozen value
    6.003     1     | 1 0    0        2    | 1700000006002      0       1700000001001    0
    6.1       0     | 0 0    1        2    | 1700000006002      0       1700000001001    0
    6.2       7     | 7 0    2        2    | 1700000006002      0       1700000001001    0
    7.003     8     | 8 0    0        3    | 1700000007003      8       1700000001001    0     calm; no change counted here
    7.1       8     | 8 0    0        2    | 1700000007003      8       1700000001001    0
    7.2       1     | 1 0    1        2    | -                  8       1700000001001    0
    7.3       2     | 2 0    2        2    | -                  8       1700000001001    0
    7.4      -2     | -2 0   3        2    | -                  8       1700000001001    0
    8.004     3     | 8 0    3        3    | 1700000007003      8       1700000008004    1
  )");
}

TEST(ChatterFilter, KeepsAllButTheInputWhileDisabledAndInAForeignState) {
  Rig rig("ChatterFilter", kTimes);
  rig.write_records({{"TmpState", "1"},
                     {"TmpV", "1"},
                     {"TmpChangeNum", "4"},
                     {"TmpQLastGood", "8"},
                     {"TmpFreezTime", "1700000000000"},
                     {"TmpTime", "5"}});
  trace(rig, R"(
    t     Enable InSignal | Q V ChangeNum #clock | InSignalOld TmpQ TmpTime       TmpState
    1       1       6     | 8 1    4        2    |     6        8   5                1
    2       0.9     7     | 0 1    4        1    |     7        0   5                1
    3       1.5     6     | 8 1    4        2    |     6        8   5                1
    4       2       5     | 0 1    4        1    |     5        0   5                1
    9       1       6     | 0 0    0        3    |     6        0   1700000009000    0     the stored 0 at the end
    9.1     0       5     | 0 0    0        1    |     5        0   1700000009000    0
    9.2     1       6     | 6 0    1        2    |     6        6   1700000009000    0
  )");
  rig.write_records({{"TmpState", "2"}, {"TmpQ", "4"}, {"TmpV", "3"}, {"TmpChangeNum", "-6"}});
  trace(rig, R"(
    t     InSignal | Q V ChangeNum #clock | InSignalOld TmpState
    19      1      | 4 3   -6        1    |     1          2       a foreign state stays
  )");
}

TEST(ChatterFilter, TakesSettingsAtAndBelowZero) {
  trace("ChatterFilter", {{"Enable", 1}, {"InSignal", 1}}, R"(
    t     ChangeWindow MaxChanges FreezTime | Q V ChangeNum | TmpState TmpQLastGood
    0         -1           1        -1      | 1 0    0      |    0         1     every call ends a window
    0         -1           0        -1      | 1 0    0      |    1         1     chatter without any change
    0         -1           0        -1      | 1 0    0      |    0         1     the next call ends the freeze
    0          0           1         0      | 1 0    0      |    0         1     not before a millisecond has passed
    0.001      0          -5         0      | 1 0    0      |    1         1
    0.001      0          -5         0      | 1 1    0      |    1         1
    0.002      0          -5         0      | 1 0    0      |    0         1
  )");
}

TEST(ChatterFilter, MeasuresSigned64BitTimes) {
  Rig rig("ChatterFilter", {{"Enable", 1}, {"ChangeWindow", 2147483647}, {"MaxChanges", 1}});
  for (const std::string start : {"1697852516352", "1697852516353", "1800000000000", "letters"}) {
    const bool over = start == "1697852516352" || start == "letters";
    rig.write_records({{"TmpTime", start}, {"TmpChangeNum", "1"}});
    rig.call_at(kTraceStart);
    EXPECT_EQ(rig.state("TmpState"), over ? "1" : "0") << start;
  }
}

TEST(ChatterFilter, StampsWithAFreshReading) {
  Rig rig("ChatterFilter", {{"Enable", 1}, {"ChangeWindow", -1}, {"FreezTime", -1}});
  fake_clock.step = 1000;
  rig.call_at(kTraceStart);  // the default at +0, the test at +1, the stamp at +2
  EXPECT_EQ(rig.state("TmpTime"), "1700000000000");
  EXPECT_EQ(rig.state("TmpFreezTime"), "1700000000002");
  rig.call_at(kTraceStart + 1);
  EXPECT_EQ(rig.state("TmpTime"), "1700000001002");
  fake_clock.step = 0;
}

}  // namespace
