#include "tests/support/rig.h"

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

TEST(Drive2, TouchesInAFailedStateItsOwnCommandAndWhenGatedOrResetBoth) {
  trace("Drive2", kReady, R"(
    CMD1= State= CMD2= Enable Permit Reset | CMD1 CMD2 State
      6      0     7     1      1      0   |  6    7     0
      6      2     7     1      1      0   |  1    7     2
      6      5     7     1      1      0   |  0    7     5
      6     15     7     1      1      0   |  6    0    15
      6    100     7     1      1      0   |  0    0   100
      6      3     7     0      1      0   |  0    0     0
      6      3     7     1      0      0   |  0    0     0
      6      3     7     1      1      1   |  0    0     0
  )");
}
