#include "tests/support/rig.h"

const Values kLimits = {{"Enable", 1},  {"HHLimit", 90}, {"HLimit", 80},
                        {"LLimit", 20}, {"LLLimit", 10}, {"DeadBand", 2}};

TEST(AAlarm, RaisesStrictlyInsideTheBandsAndLatchesUntilReset) {
  trace("AAlarm", kLimits, R"(
    t Enable InSignal Reset | HHAlm HAlm LAlm LLAlm #clock | InSignalOld TmpTime    ResetOld
    0    1      95      1   |   0    0    0     0     1    | 95.000000   1700000000    1     new instance: an edge, wins over the limit
    1    1      82      0   |   0    0    0     0     0    | 82.000000   1700000000    0
    1    1      88      0   |   0    0    0     0     0    | 88.000000   1700000000    0
    1    1      92      0   |   0    0    0     0     0    | 92.000000   1700000000    0
    1    1      18      0   |   0    0    0     0     0    | 18.000000   1700000000    0
    1    1      12      0   |   0    0    0     0     0    | 12.000000   1700000000    0
    1    1       8      0   |   0    0    0     0     0    |  8.000000   1700000000    0
    1    1      nan     0   |   0    0    0     0     0    |  nan        1700000000    0
    2    1      92.01   0   |   1    0    0     0     0    | 92.010000   1700000000    0     a jump past the high band
    2    1      82.01   2   |   1    1    0     0     0    | 82.010000   1700000000    2
    2    1      12.01   1   |   1    1    1     0     0    | 12.010000   1700000000    1     2 to 1 is no edge
    2    1       7.99   0   |   1    1    1     1     0    |  7.990000   1700000000    0
    3    1      95      1   |   0    0    0     0     1    | 95.000000   1700000003    1
    4    1      95      0   |   1    0    0     0     0    | 95.000000   1700000003    0
    6    0      95      1   |   0    0    0     0     0    | 95.000000   1700000003    1     clears, uses the edge up
    7    1      95      1   |   1    0    0     0     0    | 95.000000   1700000003    1
  )");
}

TEST(AAlarm, TakesLimitsDeadBandAndStoredNumbersAsTheyAre) {
  trace("AAlarm", kLimits, R"(
    HHAlm= State= Enable InSignal HLimit DeadBand | HHAlm HAlm LAlm LLAlm State
      -3    10      1      50       80      2     |  -3    0    0     0    10
      -     -       2      95       80      2     |   0    0    0     0     0
      -     -       1      89       80     -2     |   1    1    0     0     0    bands overlap
  )");
}
