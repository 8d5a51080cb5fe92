#include "tests/support/rig.h"

TEST(Derivative, DividesOldMinusNewByTheAgeOfTheInstance) {
  trace("Derivative", {}, R"(
    t     Enable Signal |  Q    #clock | pidQ      SignalOld TmpTimeOld
    0       1      5    | -inf   2     | -inf      5.000000  3487918080
    0.9     1      5    |  nan   2     | -nan      5.000000  3487918080
    0.999   1      4    |  inf   2     | inf       4.000000  3487918080
    1       1      4    |  0     2     | 0.000000  4.000000  3487918080
    100.9   1      9    | -0.05  2     | -0.050000 9.000000  3487918080   rising: negative
    101     0      2    |  0     1     | 0.000000  2.000000  3487918080   the signal is followed
    150     1     -1    |  0.02  2     | 0.020000  -1.000000 3487918080
  )");
}
