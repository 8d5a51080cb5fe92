#include <gtest/gtest.h>

#include "tests/support/rig.h"

namespace {

Values curve(std::initializer_list<std::pair<double, double>> points) {
  Values values = {{"Enable", 1}};
  char index = '0';
  for (const auto& [x, y] : points) {
    values.emplace_back(std::string{'X', index}, x);
    values.emplace_back(std::string{'Y', index++}, y);
  }
  return values;
}

TEST(NLScale, InterpolatesBetweenPointsAndHoldsTheEnds) {
  trace("NLScale",
        curve({{0, 0},
               {10, 100},
               {20, 150},
               {30, 175},
               {30, 190},
               {50, 200},
               {60, 205},
               {70, 208},
               {80, 209},
               {90, 210}}),
        R"(
    Enable InSignal |   Q      InRange #clock
      1       15    |  125       1      0
      1       10    |  100       1      0
      1       30    |  175       1      0     a step belongs to the segment that ends there
      1       32    |  191       1      0
      1      89.999 |  209.9999  1      0
      1       90    |  210       0      0     the ends are no longer in range
      1       95    |  210       0      0
      1        0    |    0       0      0
      1      -inf   |    0       0      0
      1       nan   |    0       1      0
      2       15    |    0       0      0     only exactly 1 enables
      1.5     15    |    0       0      0
  )");
}

TEST(NLScale, TakesTheFirstSegmentThatHoldsTheInput) {
  trace("NLScale",
        curve({{0, 0},
               {50, 100},
               {20, 50},
               {30, 64},
               {40, 70},
               {45, 75},
               {46, 76},
               {47, 77},
               {48, 78},
               {90, 300}}),
        R"(
    InSignal X1  X9 |  Q   InRange
       30    50  90 |  60     1      on the line from 0 to 50, not on the later ones
       30   nan  90 |  64     1      on the line that ends at X3
       10   nan  90 |   0     1      a point that is not a number leaves a gap
       10    50   0 | 300     0      an end left at 0
  )");
}

}  // namespace
