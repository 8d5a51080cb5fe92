#include "tests/support/rig.h"

TEST(Integral, WeighsTheTrapezoidByTheAgeOfTheInstance) {
  trace("Integral", {{"Bias", 5}}, R"(
    t      Enable Signal | Q  #clock | pidQ      SignalOld IntegralOld TmpTimeOld
    0        1      2    | 5   2     | 5.000000  2.000000   0.000000   3487918080
    0.999    1      2    | 5   2     | 5.000000  2.000000   0.000000   3487918080   the first second
    10       1.5    2    | 25  2     | 25.000000 2.000000  20.000000   3487918080   1.5 is on
    11       1      2    | 47  2     | 47.000000 2.000000  42.000000   3487918080
    12       0      7    | 0   1     | 0.000000  7.000000  42.000000   3487918080   held, the signal followed
    13       1     -9    | 34  2     | 34.000000 -9.000000 29.000000   3487918080
    14       2      1    | 0   1     | 0.000000  1.000000  29.000000   3487918080
  )");
}
