#include "tests/support/rig.h"

const Values kReady = {{"Enable", 1}, {"Permit", 1}, {"Auto", 1}, {"FeedbackMs", 500}};

TEST(Drive1V2, FollowsTheEdgesOfTheSelectedSignal) {
  trace("Drive1V2", kReady, R"(
    t  Auto AStSp HStSp Inhibit Feedback | CMD StartAlm State #clock | AStSpOld HStSpOld
    0    1    1     0      0       1     |  1     0       2     2    |    1        0
    1    0    1     0      0       1     |  1     0       2     1    |    1        0     changing over stops nothing
    2    0    0     0      0       1     |  1     0       2     1    |    0        0     the other one's fall is used up
    3    1    0     1      0       1     |  1     0       2     1    |    0        1
    4    0    0     0      0       1     |  0     0      10     3    |    0        0
    5    2    0     1      0       0     |  1     0       1     3    |    0        1     2 is hand
    6    0    0     2      0       0     |  0     1       5     2    |    0        2     1 to 2 is no edge
    7    0    0     0      0       0     |  0     1       5     1    |    0        0     nor 2 to 0
    8    1    1     0      0       0     |  1     1       1     3    |    1        0
    9    1    0     0      0       0     |  0     0       0     2    |    0        0     a stop clears a failed start
    10   1    1     0      0       1     |  1     0       2     2    |    1        0
    11   1    0     0      1       1     |  0     0     100     1    |    0        0
    12   1    0     0      0       1     |  0     0     100     1    |    0        0     the fall was used up
    13   1    1     0      2       1     |  0     0     100     1    |    1        0
  )");
}

TEST(Drive1V2, ShowsInEnbThatItIsInControl) {
  trace("Drive1V2", kReady, R"(
    t  Enable Permit Reset AStSp Feedback | Enb CMD State #clock | Enb TmpTime
    0    1      1      0     0      0     |  1   0    0     1    |  1  3487918080
    1    1      1      1     1      1     |  0   0    0     3    |  0  3487919080
    2    1      1      1     1      1     |  1   0    0     1    |  1  -          a level that stays restarts nothing
    3    0      1      0     0      1     |  0   0    0     1    |  0  3487919080
    4    1      0      1     1      1     |  0   0    0     2    |  0  3487922080
    5    1      1      1     1      1     |  1   0    0     1    |  1  -
    6    1      1      0     0      1     |  1   0   10     3    |  1  3487924080
  )");
}
