#include "tests/support/rig.h"

TEST(Filter, PassesChangesFromTheDeadBandOn) {
  trace("Filter", {{"DeadBandPct", 5}}, R"(
    InSignalOld= Enable InSignal InMin InMax |  Q    | InSignalOld TmpQ
      50           1      54.9     0    100  |  50   |  50.000000  50.000000
      -            1      55       0    100  |  55   |  55.000000  55.000000    exactly the dead band
      -            1.7    50     100      0  |  50   |  50.000000  50.000000    the order of the ends is no matter
      -            0      10       0    100  |   0   |  50.000000  0.000000     disabled: kept
      -            2      10       0    100  |   0   |  50.000000  0.000000
      -            1      54.9     0    100  |  50   |  50.000000  50.000000
      -            1      50.25    5      5  |  50.25 | 50.250000  50.250000    no span: every change
      -            1      nan      0    100  |  50.25 | 50.250000  50.250000
      -            1      0.1      0    100  |  0.10000000149011612 | 0.100000 0.100000   single precision
      -            1      0.1      5      5  |  0.10000000149011612 | 0.100000 0.100000   0/0 holds the same
  )");
}

TEST(Filter, ComparesInSinglePrecisionFromZeroOn) {
  trace("Filter", {{"Enable", 1}, {"InMax", 7}}, R"(
    InSignal   DeadBandPct | Q        | InSignalOld
      2.9      42.857143   | 0        | 0.000000          a new instance starts from 0
      3        42.857143   | 3        | 3.000000          300/7 is rounded up to the dead band
      2.5      -1          | 2.5      | 2.500000
      16777216 1           | 16777216 | 16777216.000000
      16777217 1           | 16777216 | 16777216.000000   no change in single precision
  )");
}
