#include <gtest/gtest.h>

#include "tests/support/rig.h"

namespace {

const Values kGains = {{"Enable", 1}, {"Kp", 2},        {"Ki", 0.5},    {"Kd", 4},
                       {"Bias", 1},   {"OutMin", -100}, {"OutMax", 100}};

TEST(PID, WeighsTheTrapezoidByTheAgeOfTheInstance) {
  trace("PID", kGains, R"(
    t     SetPoint ProcessValue |   Q    V #clock | pidQ       pidV ErrorOld  IntegralOld TmpTimeOld
    0.5       20       10       | -100   0   2    | -100.000000  0  10.000000    0.000000 3487918580   D is -10, t is 0
    1.499     20       10       |  nan   0   2    | -nan         0  10.000000    0.000000 3487918580   no change over t = 0
    1.5       20       10       |   26   1   2    |  26.000000   1  10.000000   10.000000 3487918580   t = 1
    10.5      20       12       |   67.8 1   2    |  -           1   8.000000  100.000000 3487918580   t = 10
    10.9      20       12       |  100   0   2    | 100.000000   0   8.000000  180.000000 -            the age counts, not the 0.4 s
  )");
}

TEST(PID, HoldsItsMemoryWhileDisabled) {
  trace("PID", kGains, R"(
    t   Enable SetPoint |  Q  V #clock | pidQ     ErrorOld  IntegralOld
    0     1       0     | nan 0   2    | -nan     0.000000  0.000000
    2     1.7     5     |  3.5 1  2    | -        5.000000  5.000000     1.7 is on
    4     0.9     9     |  0  0   1    | 0.000000 5.000000  5.000000
    6     2       9     |  0  0   1    | 0.000000 5.000000  5.000000
  )");
}

TEST(PID, IgnoresErrorsInsideTheDeadBand) {
  Rig rig("PID", kGains);
  rig.call_at(kTraceStart);
  trace(rig, R"(
    t  SetPoint  |  Q    | ErrorOld
    2   0.005    |  1    | 0.000000
    3   0.02     |  -    | 0.020000
    4   -0.0099  |  -    | 0.000000
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
  Rig rig("PID", {{"Enable", 1}, {"Ki", 1}, {"SetPoint", 1}, {"OutMin", -1e12}, {"OutMax", 1e12}});
  const std::pair<std::string, double> stamps[] = {
      {"3487918080", 0},   {"3487917080", 1}, {"3487919080", 1}, {"1340434432", 2147483},
      {"letters", 807049}, {"0", 807049},     {"7782885376", 0}, {"-807049216", 0}};
  for (const auto& [stamp, age] : stamps) {
    rig.write_records({{"ErrorOld", "1"}, {"TmpTimeOld", stamp}});
    rig.call_at(kTraceStart);
    EXPECT_EQ(std::stod(rig.state("IntegralOld")), age) << stamp;
  }
}

}  // namespace
