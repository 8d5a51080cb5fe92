#include <gtest/gtest.h>

#include "tests/support/rig.h"

namespace {

const Values kReady = {{"Enable", 1}, {"Permit", 1}, {"Auto", 1}, {"FeedbackMs", 500}};

TEST(Drive2, HoldsOneCommandAtATime) {
  trace("Drive2", kReady, R"(
    t    AStart AStop Inhibit Feedback1 Feedback2 | CMD1 CMD2 StartAlm StopAlm State #clock | CMD1 CMD2
    0      1      0      0        2         0     |  1    0      0        0      1     3    |  1    0    Feedback2 confirms no start
    0.4    1      0      0        1         1     |  1    0      0        0      2     1    |  1    0
    1      0      1      0        0         1     |  0    1      0        0     10     3    |  0    1    Feedback1 confirms no stop
    1.5    0      1      0        0         2     |  0    1      0        0     10     2    |  0    1
    1.501  0      1      0        0         1     |  0    0      0        1     15     2    |  0    0
    2      0      0      0        0         0     |  0    0      0        1     15     1    |  0    0
    3      0      1      0        1         0     |  0    1      0        0      0     2    |  0    1    stays after a confirmed stop
    4      0      0      0        1         1     |  0    1      0        0      0     1    |  0    1
    5      1      0      0        0         1     |  1    0      0        0      1     3    |  1    0
    5.6    1      0      0        0         1     |  0    0      1        0      5     2    |  0    0
    6      0      0      0        1         1     |  0    0      1        0      5     1    |  0    0
    7      1      0      0        1         1     |  1    0      0        0      2     2    |  1    0
    8      1      0      1        0         1     |  0    0      0        0    100     1    |  0    0
    9      0      1      0        0         1     |  0    1      0        0     10     3    |  0    1
  )");
}

TEST(Drive2, DropsBothCommandsWhenGatedOrReset) {
  for (const auto& [pin, value] : Values{{"Enable", 0}, {"Permit", 0}, {"Reset", 1}}) {
    Rig rig("Drive2", kReady);
    rig.write_records({{"CMD1", "1"}, {"State", "3"}, {"StopAlm", "1"}, {"CMD2", "1"}});
    rig.set(pin, value);
    rig.call();
    for (const Pin& output : rig.out_pins) EXPECT_EQ(output.Value, 0) << pin;
  }
}

TEST(Drive2, TouchesInAFailedStateItsOwnCommandOnly) {
  const std::pair<std::string, std::string> cases[] = {
      {"0", "67"}, {"2", "17"}, {"5", "07"}, {"15", "60"}, {"100", "00"}};
  for (const auto& [state, commands] : cases) {
    Rig rig("Drive2", kReady);
    rig.write_records({{"CMD1", "6"}, {"State", state}, {"CMD2", "7"}});
    rig.call();
    EXPECT_EQ(rig.state("CMD1") + rig.state("CMD2"), commands) << state;
  }
}

}  // namespace
