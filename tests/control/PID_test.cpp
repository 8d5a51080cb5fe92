#include "tests/support/rig.h"

const Values kGains = {{"Enable", 1}, {"Kp", 2},        {"Ki", 0.5},    {"Kd", 4},
                       {"Bias", 1},   {"OutMin", -100}, {"OutMax", 100}};

TEST(PID, WeighsTheTrapezoidByTheAgeOfTheInstance) {
  trace("PID", kGains, R"(
    t     Enable SetPoint ProcessValue |   Q    V #clock | pidQ       pidV ErrorOld  IntegralOld TmpTimeOld
    0.5     1      20       10         | -100   0   2    | -100.000000  0  10.000000    0.000000 3487918580   D is -10, t is 0
    1.499   1      20       10         |  nan   0   2    | -nan         0  10.000000    0.000000 3487918580   no change over t = 0
    1.5     1.7    20       10         |   26   1   2    |  26.000000   1  10.000000   10.000000 3487918580   t = 1; 1.7 is on
    10.5    1      20       12         |   67.8 1   2    |  -           1   8.000000  100.000000 3487918580   t = 10
    10.9    1      20       12         |  100   0   2    | 100.000000   0   8.000000  180.000000 -            the age counts, not the 0.4 s
    11      0.9    90       12         |    0   0   1    |   0.000000   0   8.000000  180.000000 -            disabled: held
    12      2      90       12         |    0   0   1    |   0.000000   0   8.000000  180.000000 -
    13      1      12.005   12         |  100   0   2    | 100.000000   0   0.000000  228.000000 -            the dead band
    14      1      12       12.0099    |  100   0   2    | 100.000000   0   0.000000  228.000000 -
    15      1      12       12.0101    |  100   0   2    | 100.000000   0  -0.010100  -          -
  )");
}

TEST(PID, LimitsInOrder) {
  trace("PID", {{"Enable", 1}, {"Kp", 1}, {"OutMin", 0}, {"OutMax", 100}}, R"(
    t  SetPoint OutMin OutMax |  Q   V | IntegralOld
    0     0        0    100   | nan  0 | 0.000000
    2   100        0    100   | 100  0 | 100.000000     equal to a limit is not inside
    3   1e9        0    100   | 100  0 | 1500000250.000000
    4    50        0    100   |  50  1 | -
    5    -1        0    100   |   0  0 | -
    6     5       10      2   |  10  0 | -              crossed limits: the lower is tested first
    7    11       10      2   |   2  0 | -
    8   nan        0    100   | nan  0 | nan
  )");
}

TEST(PID, FollowsTheAgeThroughThe32BitClock) {
  trace("PID", {{"Enable", 1}, {"SetPoint", 1}}, R"(
    t ErrorOld= TmpTimeOld= |  V | IntegralOld
    0     1     3487918080  |  0 | 0.000000
    0     1     3487917080  |  0 | 1.000000
    0     1     3487919080  |  0 | 1.000000          set back
    0     1     1340434432  |  0 | 2147483.000000
    0     1     letters     |  0 | 807049.000000
    0     1     7782885376  |  0 | 0.000000          the low 32 bits
    0     1     -807049216  |  0 | 0.000000
  )");
}
