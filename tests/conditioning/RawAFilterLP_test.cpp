#include <gtest/gtest.h>

#include "tests/support/rig.h"

namespace {

TEST(RawAFilterLP, HoldsASpikeForMoreThanFiveSeconds) {
  trace("RawAFilterLP", {{"JumpLimit", 10}}, R"(
    t    Enable InSignal |  Q  #clock | InSignalOld TmpQ      TmpTime    state
    0      1      50     | 50   1     | 50.000000   50.000000 1700000000   0    the first input is good
    1      1.5    55     | 55   1     | 55.000000   55.000000 1700000000   0
    2.9    1      65     | 55   2     | 55.000000   55.000000 1700000002   1    exactly JumpLimit
    7.9    1      54     | 55   2     | 55.000000   55.000000 1700000002   1    5 whole seconds
    8      1      45     | 55   3     | 55.000000   55.000000 1700000008   1    still away: the next hold
    13     1      57     | 55   2     | 55.000000   55.000000 1700000008   1
    14     1      57     | 57   2     | 57.000000   57.000000 1700000008   0
    15     1     nan     | 57   2     | 57.000000   57.000000 1700000015   1
    16     2      57     |  0   1     | 57.000000   0.000000  1700000015   1
    17     1      57     |  0   2     | 57.000000   0.000000  1700000015   1    the stored 0 until the end
    21     1      57     | 57   2     | 57.000000   57.000000 1700000015   0
    22     1       0     | 57   2     | 57.000000   57.000000 1700000022   1
    -9     1      57     | 57   2     | 57.000000   57.000000 1700000022   1    set back: the hold goes on
  )");
}

TEST(RawAFilterLP, TakesAnythingAfterAGoodValueOfZeroWhilePassing) {
  Rig rig("RawAFilterLP", {{"Enable", 1}, {"JumpLimit", 10}, {"InSignal", 500}});
  rig.write_records({{"TmpQ", "7"}});  // a file without the good value: 0, not the input
  trace(rig, R"(
    t   |  Q  | InSignalOld state
    0   | 500 | 500.000000   0
  )");
  rig.write_records({{"state", "1"}, {"TmpTime", "1700000000"}});
  trace(rig, R"(
    t   InSignal |  Q  | InSignalOld TmpTime    state
    6     500    |   0 | 0.000000    1700000006   1      no such thing during a hold
    12      9    |   9 | 9.000000    1700000006   0
  )");
  rig.write_records({{"State", "1"}, {"state", "5"}, {"TmpQ", "7"}, {"TmpTime", "3"}});
  trace(rig, R"(
    t   |  Q  #clock | InSignalOld TmpQ     TmpTime state
    20  |  7    1    | 0.000000    7.000000    3      5     a foreign state stays
  )");
}

TEST(RawAFilterLP, AcceptsNothingWithoutALimitButKeepsTheFirstInput) {
  trace("RawAFilterLP", {{"InSignal", 50}}, R"(
    t  Enable JumpLimit InSignal       |  Q | InSignalOld TmpTime    state
    0    0        0     50             |  0 | 50.000000   1700000000   0
    1    1        0     50             | 50 | 50.000000   1700000001   1
    7    1       -1     50             | 50 | 50.000000   1700000007   1
   13    1        0.1   50.0999999999  | 50 | 50.000000   1700000013   1    a jump of 0.1 in single precision
  )");
}

TEST(RawAFilterLP, StampsAHoldWithAFreshReading) {
  Rig rig("RawAFilterLP", {{"Enable", 1}, {"InSignal", 50}});
  fake_clock.step = 1000000;
  rig.call_at(kTraceStart);  // the default at +0, the stamp at +1
  EXPECT_EQ(rig.state("TmpTime"), "1700000001");
  rig.call_at(kTraceStart + 6);  // the default at +6, the test at +7, the stamp at +8
  EXPECT_EQ(rig.state("TmpTime"), "1700000008");
  fake_clock.step = 0;
}

}  // namespace
