#include "tests/support/rig.h"

const Values kBand = {{"Enable", 1}, {"LowLimit", 10}, {"HighLimit", 20}, {"DelayMs", 1000}};

TEST(AWatch, RaisesAfterMoreThanTheDelayAndLatches) {
  trace("AWatch", kBand, R"(
    t     Enable InSignal DelayMs Reset | AlmQ #clock | State TmpTime
    0.5     1      10       1000    0   |  0     1    |   1   3487918580
    1.5     1      20       1000    0   |  0     1    |   1   3487918580     exactly the delay
    1.501   1      20.01    1000    0   |  0     0    |   0   3487918580
    2       1      15       1000    0   |  0     1    |   1   3487920080
    3.001   1      15       1000    0   |  1     1    |  10   3487920080
    4       1       9.99    1000    0   |  1     0    |  10   3487920080
    5       1      15       1000    1   |  0     1    |   0   1700000005     seconds, never used
    6       1      15       1000    0   |  0     1    |   1   3487924080
    7       1      nan      1000    0   |  0     0    |   0   3487924080
    8       1      15       1000    1   |  0     2    |   0   1700000008     entry and edge
    9       1      15         -1    0   |  0     1    |   1   3487927080     the entry never raises
    9       1      15         -1    0   |  1     1    |  10   3487927080
    9       0      15         -1    1   |  0     0    |   0   3487927080
  )");
}

TEST(AWatch, MeasuresThroughTheWrapAndStepsInAnyStateThatTimes) {
  trace("AWatch", kBand, R"(
    t          State= TmpTime= AlmQ= InSignal | AlmQ | State TmpTime
    807049.000   -       -       -      15    |  0   |   1   4294967080
    807050.000   -       -       -      15    |  0   |   1   4294967080     784 behind the wrap
    807050.001   -       -       -      15    |  1   |  10   4294967080
    807050.000   5      1784     7      15    |  7   |   5   1784           set back by the delay
    807050.000   -       -       -       9    |  7   |   0   1784           outside, AlmQ keeps what is stored
    807050.000   -       -       -      15    |  7   |   1   784
    807048.999   -       -       -      15    |  1   |  10   784            set back by more
  )");
}
