#include "tests/support/rig.h"

TEST(RawAFilterLP, HoldsASpikeForMoreThanFiveSeconds) {
  trace("RawAFilterLP", {{"JumpLimit", 10}}, R"(
    t   #step Enable InSignal |  Q  #clock | InSignalOld TmpQ      TmpTime    state
    0     -     1      50     | 50   1     | 50.000000   50.000000 1700000000   0    the first input is good
    1     -     1.5    55     | 55   1     | 55.000000   55.000000 1700000000   0
    2.9   -     1      65     | 55   2     | 55.000000   55.000000 1700000002   1    exactly JumpLimit
    7.9   -     1      54     | 55   2     | 55.000000   55.000000 1700000002   1    5 whole seconds
    8     1     1      45     | 55   3     | 55.000000   55.000000 1700000010   1    still away: the next hold, with a fresh stamp
    15    -     1      57     | 55   2     | 55.000000   55.000000 1700000010   1
    16    -     1      57     | 57   2     | 57.000000   57.000000 1700000010   0
    17    1     1     nan     | 57   2     | 57.000000   57.000000 1700000018   1
    18    -     2      57     |  0   1     | 57.000000   0.000000  1700000018   1
    19    -     1      57     |  0   2     | 57.000000   0.000000  1700000018   1    the stored 0 until the end
    24    -     1      57     | 57   2     | 57.000000   57.000000 1700000018   0
    25    -     1       0     | 57   2     | 57.000000   57.000000 1700000025   1
    -9    -     1      57     | 57   2     | 57.000000   57.000000 1700000025   1    set back: the hold goes on
  )");
}

TEST(RawAFilterLP, TakesAnythingAfterAGoodValueOfZeroWhilePassing) {
  trace("RawAFilterLP", {{"Enable", 1}, {"JumpLimit", 10}}, R"(
    t   State= state= TmpQ= TmpTime=   InSignal |  Q  #clock | InSignalOld TmpQ       TmpTime    state
    0     -      -      7      -         500    | 500   1    | 500.000000  500.000000 1700000000   0   a file without the good value: 0, not the input
    6     -      1      0   1700000000   500    |   0   3    | 0.000000    0.000000   1700000006   1   no such thing during a hold
    12    -      -      -      -           9    |   9   2    | 9.000000    9.000000   1700000006   0
    20    1      5      7      3           9    |   7   1    | 0.000000    7.000000   3            5   a foreign state stays
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
