#include "tests/support/rig.h"

const Values kCurve = {{"Enable", 1}, {"X1", 10},  {"Y1", 100}, {"X2", 20},  {"Y2", 150},
                       {"X3", 30},    {"Y3", 175}, {"X4", 30},  {"Y4", 190}, {"X5", 50},
                       {"Y5", 200},   {"X6", 60},  {"Y6", 205}, {"X7", 70},  {"Y7", 208},
                       {"X8", 80},    {"Y8", 209}, {"X9", 90},  {"Y9", 210}};

TEST(NLScale, InterpolatesInTheFirstSegmentThatHoldsTheInputAndHoldsTheEnds) {
  trace("NLScale", kCurve, R"(
    Enable InSignal X1  X9 |   Q      InRange #clock
      1       15    10  90 |  125       1      0
      1       10    10  90 |  100       1      0
      1       30    10  90 |  175       1      0     a step belongs to the segment that ends there
      1       32    10  90 |  191       1      0
      1      89.999 10  90 |  209.9999  1      0
      1       90    10  90 |  210       0      0     the ends are no longer in range
      1        0    10  90 |    0       0      0
      1      -inf   10  90 |    0       0      0
      1       nan   10  90 |    0       1      0
      2       15    10  90 |    0       0      0     only exactly 1 enables
      1.5     15    10  90 |    0       0      0
      1       35    50  90 |   70       1      0     on the line from 0 to 50, not on the later ones
      1       25   nan  90 |  162.5     1      0     on the line from X2 to X3
      1       10   nan  90 |    0       1      0     a point that is not a number leaves a gap
      1       10    50   0 |  210       0      0     an end left at 0
  )");
}
