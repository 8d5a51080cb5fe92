// Also what the three drives share: starts, stops and their supervision, gates, resets and edges.
#include "tests/support/rig.h"

const Values kReady = {{"Enable", 1}, {"Permit", 1}, {"Auto", 1}, {"FeedbackMs", 500}};

TEST(Drive1, SupervisesStartsAndStops) {
  trace("Drive1", kReady, R"(
    t     AStart AStop Feedback | CMD StartAlm StopAlm State #clock | TmpTime
    0       1      0      0     |  1     0        0      1     3    | 3487918080   also an edge in the first call
    0.5     1      0      2     |  1     0        0      1     2    | 3487918080   2 confirms nothing; not yet more than 500
    0.501   1      0      0     |  0     1        0      5     2    | 3487918080
    0.6     1      0      1     |  0     1        0      5     1    | 3487918080   too late; a held signal acts once
    0.7     0      0      0     |  0     1        0      5     1    | 3487918080
    1       1      0      0     |  1     1        0      1     3    | 3487919080   the alarm waits for the feedback
    1.9     1      0      1.9   |  1     0        0      2     1    | -            which counts even after the time
    2       1      0      0     |  1     0        0      2     1    | 3487919080   its loss raises nothing
    3       0      1      2     |  0     0        0     10     3    | 3487921080
    3.5     0      1      2     |  0     0        0     10     2    | 3487921080
    3.501   0      1      1     |  0     0        1     15     2    | 3487921080
    4       0      0      0     |  0     0        1     15     1    | 3487921080
    4.5     0      1      1     |  0     0        1     10     3    | 3487922580   the stop alarm waits too
    5       1      0      0     |  1     0        1      1     3    | 3487923080
    5.6     1      0      0     |  0     1        0      5     2    | -            a failure replaces the other alarm
    6       0      1      0.7   |  0     0        0      0     2    | 3487924080   confirmed in the call of the stop
    7       1      0      1     |  1     0        0      2     2    | 3487925080   and of the start
  )");
}

TEST(Drive1, LetsLaterSignalsOverrideEarlierOnes) {
  Values slow = kReady;
  slow.insert(slow.end(), {{"Feedback", 2}, {"FeedbackMs", 1e9}});
  trace("Drive1", slow, R"(
    Auto AStart AStop HStart HStop IStart IStop | CMD State #clock | AStartOld AStopOld HStartOld HStopOld IStartOld IStopOld
     1     1      1     1      0     0      0   |  0   10     4    |     1         1        1         0        0        0     stop over start; a reading for each
     0     1      1     1      0     0      0   |  0   10     2    |     1         1        1         0        0        0     HStart was used up
     0     0      0     0      0     0      0   |  0   10     2    |     0         0        0         0        0        0
     0     0      0     1      0     0      0   |  1    1     3    |     0         0        1         0        0        0
     0     0      0     0      1     1      0   |  1    1     4    |     0         0        0         1        1        0     IStart over HStop
     2     0      0     1      0     0      1   |  0   10     4    |     0         0        1         0        0        1     2 is hand; IStop over HStart
     1     2      0     0      0     0      0   |  0   10     2    |     2         0        0         0        0        0
     1     1      0     0      0     0      0   |  0   10     2    |     1         0        0         0        0        0     2 to 1 is no edge
     1     1      0     0      0     1      1   |  0   10     4    |     1         0        0         0        1        1     IStop over IStart
  )");
}

TEST(Drive1, ObeysInhibit) {
  trace("Drive1", kReady, R"(
    t   Inhibit Feedback AStart AStop IStart IStop | CMD StartAlm StopAlm State
    0      1       0       1      0     0      0   |  0     0        0      0
    1      0       0       1      0     0      0   |  0     0        0      0    used up
    2      1       0       0      0     1      0   |  1     0        0      1    IStart passes
    2.1    1       1       0      0     0      0   |  1     0        0      2
    3      2       1       0      1     0      0   |  1     0        0      2    2 blocks, but drops nothing
    4      1       1       0      0     0      0   |  0     0        0    100
    5      0       1       0      0     0      0   |  0     0        0    100
    6     -1       1       0      1     0      0   |  0     0        0    100
    7      1       1       0      0     0      1   |  0     0        0     10
    8      1       1       0      0     0      0   |  0     0        1     15
  )");
}

TEST(Drive1, GatesAndResets) {
  trace("Drive1", kReady, R"(
    t  Enable Permit Reset AStart Feedback | CMD StartAlm State #clock | TmpTime    ResetOld AStartOld
    0    1      1      0     1       0     |  1     0       1     3    | 3487918080    0        1
    1    1      1      0     1       0     |  0     1       5     2    | -             0        1
    2    1      1      1     0       0     |  0     0       0     2    | 3487920080    1        0
    3    1      1      1     1       1     |  1     0       2     2    | 3487921080    1        1
    4    1      1      2     1       1     |  1     0       2     1    | 3487921080    2        1
    5    1      1      1     1       1     |  1     0       2     1    | -             1        1       2 to 1 resets nothing
    6    0      1      0     0       1     |  0     0       0     1    | 3487921080    0        0
    7    2      1      1     1       1     |  0     0       0     1    | 3487921080    1        1       2 is not enabled
    8    1      1      1     1       1     |  0     0       0     1    | 3487921080    1        1       both edges are used up
    9    1      1      0     0       0     |  0     0       0     1    | 3487921080    0        0
    10   1      0      1     1       0     |  0     0       0     2    | 3487928080    1        1       Reset acts without Permit
    11   1      1      0     0       0     |  0     0       0     1    | 3487928080    0        0
    12   1      1      1     1       1     |  0     0       0     3    | 3487930080    1        1       Reset over a start
  )");
}

TEST(Drive1, CountsEveryPassingOfTimeFromItsStamp) {
  trace("Drive1", kReady, R"(
    t State= TmpTime=   FeedbackMs Feedback | State
    0   1    3487918080     0         0     |   1
    0   1    3487918079     0         0     |   5
    0   1    3487918080    -1         0     |   5
    0   1    3487918580    500        0     |   1     a clock set back counts
    0   1    3487918581    500        0     |   5
    0  10    3487918080    -1         1     |  15
    0   1    letters       500        0     |   5
    0   1    1340434433 2147483646    0     |   5
    0   1    0             5e9        0     |   1
    0  10    3484318080    6e4        0     |   0     an hour ago: confirmed all the same
  )");
}

TEST(Drive1, HandsOnWhatTheFileHoldsAndItsStateLeavesAlone) {
  trace("Drive1", kReady, R"(
    CMD= State= StartAlm= StopAlm= | CMD StartAlm StopAlm State
     7     0       8         9     |  7     8        9      0
     7     2       8         9     |  1     8        9      2
     7     3       8         9     |  7     8        9      3
     7     5       8         9     |  0     1        0      5
     7    15       8         9     |  0     0        1     15
     7   100       8         9     |  0     0        0    100
  )");
}
