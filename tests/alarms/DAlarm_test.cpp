#include "tests/support/rig.h"

TEST(DAlarm, RaisesAfterTheDelayAndLatches) {
  trace("DAlarm", {{"Enable", 1}, {"DelaySec", 5.9}}, R"(
    t    InSignal Reset | AlmQ #clock | State TmpTime
     0.9    1       0   |  0     1    |   2   1700000000     new instance: a rising edge; whole seconds of the clock
     4.99   1.2     0   |  0     1    |   2   1700000000
     5      0.7     0   |  0     0    |   0   1700000000     a fall ends the delay
     6      1       0   |  0     1    |   2   1700000006
    10      1       0   |  0     1    |   2   1700000006
    11      1       0   |  1     1    |  10   1700000006
    12      0       0   |  1     0    |  10   1700000006
    13      1       0   |  1     0    |  10   1700000006     no edge of the input is seen in the alarm
    14      1       1   |  0     1    |   0   1700000014     that of Reset is
    19      1       1   |  1     1    |  10   1700000014     back without a rising edge
    30      2       0   |  1     0    |  10   1700000014
    31      2       1   |  0     1    |   0   1700000031
    40      1       0   |  0     0    |   0   1700000031     2 is no level
    41      1       1   |  0     2    |   0   1700000041     raised and acknowledged in one call
  )");
}

TEST(DAlarm, MeasuresFromTheStoredStampOverDisablingOutagesAndSteps) {
  trace("DAlarm", {{"Enable", 1}, {"DelaySec", 60}}, R"(
    t   Enable InSignal DelaySec | AlmQ #clock | State TmpTime
     0    0      1         60    |  0     0    |   0   0
     1    1      1         60    |  1     1    |  10   0              never stamped
     2    0      0         60    |  0     0    |   0   0
     3    1      1         -1    |  0     1    |   2   1700000003     the edge never raises
   -56    1      1         60    |  0     1    |   2   1700000003
   -57    1      1         60    |  1     1    |  10   1700000003     set back by the delay
     5    0      1         60    |  0     0    |   0   1700000003
    63    1      1         60    |  1     1    |  10   1700000003
  )");
}
