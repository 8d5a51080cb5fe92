#include "tests/support/rig.h"

TEST(DWatch, WatchesTheTimeAtALevel) {
  trace("DWatch", {{"Enable", 1}, {"WatchSec", 2.5}}, R"(
    t  Enable Mode InSignal Reset | AlmQ #clock | State TmpTime    ResetOld
    0    1      0    0.7      0   |  0     2    |   0   1700000000    0      a new instance counts from its first call
    2    1      0    0        0   |  0     2    |   0   1700000000    0
    3    1      0    0        0   |  1     2    |  10   1700000000    0
    4    1      0    1        0   |  1     1    |  10   1700000000    0
    5    1      0    1        1   |  0     2    |   0   1700000005    1
    9    1      0    1        0   |  0     1    |   0   1700000005    0
   20    1      0    0        0   |  0     2    |   1   1700000020    0      falling edge
   22    1      0    2        0   |  0     1    |   1   1700000020    0
   30    1      0    0        0   |  0     1    |   1   1700000020    0      2 to 0 is no edge
   31    1      0    0        1   |  0     3    |   0   1700000031    1      raised and acknowledged in one call
   40    1      1    1        0   |  0     2    |   2   1700000040    0      rising edge
   42    1      1    1        0   |  0     2    |   2   1700000040    0
   37    1      1    1        0   |  1     2    |  10   1700000040    0      a clock set back counts
   43    2      1    3        1   |  1     1    |  10   1700000040    1      disabled: held, and the edges are used up
   44    1      7    3        1   |  1     1    |  10   1700000040    1      no mode: keeps the alarm
   45    1      7    0        0   |  1     1    |  10   1700000040    0
   46    1      7    0        1   |  0     2    |   0   1700000046    1
  )");
}

TEST(DWatch, CountsCyclesThatAreNeverCleared) {
  trace("DWatch", {{"Enable", 1}, {"WatchSec", 60}, {"CycleLimit", 2}}, R"(
    t   State= CyclicCounter= Mode InSignal Reset | AlmQ #clock | State TmpTime    FirstRun CyclicCounter
      0   -         -           1     0       0   |  0     1    |   0   1700000000    1          0
    100   -         -           2     1       0   |  0     3    |   0   1700000100    0          1     the first call in mode 2 starts the period
    160   -         -           2     0       0   |  0     3    |   0   1700000160    0          1     below the limit: a new period
    219   -         -           2     1       0   |  0     2    |   0   1700000160    0          2     the edges add up
    220   -         -           2     0       0   |  1     2    |  10   1700000160    0          2
    221   -         -           2     1       0   |  1     1    |  10   1700000160    0          2     not counted in the alarm
    230   -         -           2     1       1   |  0     2    |   0   1700000230    0          2
    289   -         -           1     0       0   |  0     1    |   0   1700000230    0          2
    290   -         -           2     0       0   |  1     2    |  10   1700000230    0          2     back without an edge; no new first run
    299  10    2147483647       2     0       0   |  1     2    |  10   1700000299    0      2147483647     the first period starts in the alarm too
    300   -         -           2     0       1   |  0     2    |   0   1700000300    0      2147483647
    301   -         -           2     1       1   |  0     2    |   0   1700000300    0     -2147483648
  )");
}
