#include "tests/support/rig.h"

TEST(Hystersis, SwitchesWithTwoLevels) {
  trace("Hystersis", {{"SetPoint", 20}, {"HighBand", 5}, {"LowBand", 2}}, R"(
    TmpQ= State= TmpHigh= Enable InSignal | Q High #clock | TmpQ State TmpHigh
      -     -      -        1      19     | 0  0     0    |  0     0     0
      -     -      -        1.5    20     | 1  0     0    |  1     1     0      on at the set point itself
      -     -      -        1      18     | 1  0     0    |  1     1     0      L belongs to the band
      -     -      -        1      17.9   | 0  0     0    |  0     0     0
      -     -      -        1      30     | 1  0     0    |  1     1     0      High one call later
      -     -      -        1      30     | 1  1     0    |  1     2     1
      -     -      -        1      25     | 1  0     0    |  1     1     0      so does H
      -     -      -        1      25.1   | 1  1     0    |  1     2     1
      -     -      -        1      10     | 1  1     0    |  1     2     1      below the band: stuck
      -     -      -        0      24     | 0  0     0    |  0     2     0      disabled: the position is held
      -     -      -        2      24     | 0  0     0    |  0     2     0
      -     -      -        1      10     | 0  0     0    |  0     2     0      and the outputs wait for a rule
      -     -      -        1      18     | 1  0     0    |  1     1     0
      7     0     -1        1      nan    | 1  1     0    |  7     0    -1      no rule: all is as read
      7     1     -1        1      nan    | 1  1     0    |  7     1    -1
      7     2     -1        1      nan    | 1  1     0    |  7     2    -1
      7     3     -1        1      22     | 1  1     0    |  7     3    -1
  )");
}

TEST(Hystersis, TestsOneAfterTheOtherWhenBandsCross) {
  trace("Hystersis", {{"Enable", 1}, {"SetPoint", 20}, {"HighBand", -5}}, R"(
    InSignal LowBand | Q High | State
      21       -3    | 1  0   |  1
      24       -3    | 1  1   |  2    above H = 15, not below L = 23
      15        9    | 1  0   |  1
      18       -3    | 0  0   |  0    above H and below L: the last test decides
  )");
}
