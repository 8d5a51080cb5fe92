#include <gtest/gtest.h>

#include "tests/support/rig.h"

TEST(DWatch, WatchesTheTimeAtALevel) {
  trace("DWatch", {{"Enable", 1}, {"WatchSec", 2.5}}, R"(
    t  Mode InSignal Reset | AlmQ #clock | State TmpTime    FirstRun
    0    0    0.7      0   |  0     2    |   0   1700000000    1      a new instance counts from its first call
    2    0    0        0   |  0     2    |   0   1700000000    1
    3    0    0        0   |  1     2    |  10   1700000000    1
    4    0    1        0   |  1     1    |  10   1700000000    1
    5    0    1        1   |  0     2    |   0   1700000005    1
    9    0    1        0   |  0     1    |   0   1700000005    1
   20    0    0        0   |  0     2    |   1   1700000020    1      falling edge
   22    0    2        0   |  0     1    |   1   1700000020    1
   30    0    0        0   |  0     1    |   1   1700000020    1      2 to 0 is no edge
   31    0    0        1   |  0     3    |   0   1700000031    1      raised and acknowledged in one call
   40    1    1        0   |  0     2    |   2   1700000040    1      rising edge
   42    1    1        0   |  0     2    |   2   1700000040    1
   37    1    1        0   |  1     2    |  10   1700000040    1      a clock set back counts
   44    7    0        0   |  1     1    |  10   1700000040    1      no mode: keeps the alarm
   45    7    0        1   |  0     2    |   0   1700000045    1
  )");
}

TEST(DWatch, HoldsWhileDisabled) {
  trace("DWatch", {{"Mode", 1}, {"WatchSec", 10}}, R"(
    t  Enable InSignal Reset | AlmQ #clock | State TmpTime    InSignalOld ResetOld
    0     2      1       0   |  0     1    |   0   1700000000      1         0
   10     1      1       0   |  1     2    |  10   1700000000      1         0     the disabled time counts
   11     0      3       1   |  1     1    |  10   1700000000      3         1
   12     1      3       1   |  1     1    |  10   1700000000      3         1     the edge is used up
  )");
}

TEST(DWatch, CountsCyclesThatAreNeverCleared) {
  Rig rig("DWatch", {{"Enable", 1}, {"WatchSec", 60}, {"CycleLimit", 2}});
  trace(rig, R"(
    t   Mode InSignal Reset | AlmQ #clock | State TmpTime    FirstRun CyclicCounter
      0   1     0       0   |  0     1    |   0   1700000000    1          0
    100   2     1       0   |  0     3    |   0   1700000100    0          1     the first call in mode 2 starts the period
    160   2     0       0   |  0     3    |   0   1700000160    0          1     below the limit: a new period
    219   2     1       0   |  0     2    |   0   1700000160    0          2     the edges add up
    220   2     0       0   |  1     2    |  10   1700000160    0          2
    221   2     1       0   |  1     1    |  10   1700000160    0          2     not counted in the alarm
    230   2     1       1   |  0     2    |   0   1700000230    0          2
    289   1     0       0   |  0     1    |   0   1700000230    0          2
    290   2     0       0   |  1     2    |  10   1700000230    0          2     back without an edge; no new first run
  )");
  rig.write_records({{"State", "10"}, {"CyclicCounter", "2147483647"}});
  trace(rig, R"(
    t   InSignal Reset | AlmQ #clock | State TmpTime    FirstRun CyclicCounter
    299    0       0   |  1     2    |  10   1700000299    0      2147483647     the first period starts in the alarm too
    300    0       1   |  0     2    |   0   1700000300    0      2147483647
    301    1       1   |  0     2    |   0   1700000300    0     -2147483648
  )");
}
