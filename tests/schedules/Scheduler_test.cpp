// Whole weeks and years, over the changes of summer time, are held against a calendar by
// calendar.py.
#include <cstdio>

#include "tests/support/rig.h"

constexpr const char* kCentralEurope = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr const char* kLordHowe = "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0";  // half an hour of summer

// Calls every 10 s and lists the pulses as "01:58-03:03", by the outputs Hour and Minute.
std::string pulses(const char* start, int minutes, double interval, double lead, double duration) {
  Rig rig("Scheduler",
          {{"Enable", 1}, {"IntervalMin", interval}, {"LeadMin", lead}, {"DurationMin", duration}});
  std::string list;
  bool on = false;
  for (int second = 0; second < minutes * 60; second += 10) {
    rig.call_at(utc(start) + second);
    if ((rig.out("Q") == 1) == on) continue;
    on = !on;
    char time[16];
    std::snprintf(time, sizeof time, "%02.0f:%02.0f%s", rig.out("Hour"), rig.out("Minute"),
                  on ? "-" : " ");
    list += time;
  }
  return list;
}

TEST(Scheduler, StartsInTheMinutesOfTheGrid) {
  const TimeZone zone("UTC");
  const auto hour = [](double interval, double lead, double duration) {
    return pulses("2026-03-02T10:00:00", 65, interval, lead, duration);
  };
  EXPECT_EQ(hour(15, 2, 3), "10:13-10:18 10:28-10:33 10:43-10:48 10:58-11:03 ");
  EXPECT_EQ(hour(15, 0, 3), "10:15-10:18 10:30-10:33 10:45-10:48 ") << "60 is no minute";
  EXPECT_EQ(hour(60, 0, 3), "");
  EXPECT_EQ(hour(60, 1, 1), "10:59-11:01 ");
  EXPECT_EQ(hour(10, 12, 1), "10:08-10:21 10:28-10:41 10:48-11:01 ") << "nor is -2";
  EXPECT_EQ(hour(5, 0, 5),
            "10:05-10:10 10:15-10:20 10:25-10:30 10:35-10:40 10:45-10:50 10:55-11:00 ")
      << "the minute in which a pulse ends starts none";
  EXPECT_EQ(hour(15, 15, 0), "10:15-10:30 10:45-11:00 ") << "minute 0 of a new instance";
  EXPECT_EQ(hour(30, -5, 10), "10:35-10:40 ");
  EXPECT_EQ(hour(15, 20, -19), "10:10-10:11 10:25-10:26 10:40-10:41 ") << "nor boundaries above 60";
  EXPECT_EQ(hour(30.9, 1.9, 1.9), "10:29-10:31 10:59-11:01 ");
  for (const double interval : {0., -15., 7., 45., 90., 120., 2147483647., -2147483648.})
    for (const double lead : {0., 1., -60., 2147483647., -2147483648.})
      EXPECT_EQ(hour(interval, lead, 1), "") << interval << " " << lead;
}

TEST(Scheduler, FollowsTheLocalMinuteThroughSummerTime) {
  {
    const TimeZone zone(kCentralEurope);
    EXPECT_EQ(pulses("2026-03-29T00:00:00", 125, 60, 2, 3), "01:58-03:03 03:58-04:03 ");
    EXPECT_EQ(pulses("2026-10-25T00:00:00", 125, 60, 2, 3), "02:58-02:03 02:58-03:03 ");
  }
  const TimeZone zone(kLordHowe);  // also a zone that has changed since the last call
  EXPECT_EQ(pulses("2026-10-03T15:00:00", 65, 30, 1, 1), "01:59-02:31 02:59-03:01 ");
  EXPECT_EQ(pulses("2026-04-04T14:30:00", 65, 30, 1, 1), "01:59-01:31 01:59-02:01 ");
}

const Values kGrid = {{"Enable", 1}, {"IntervalMin", 15}, {"LeadMin", 2}, {"DurationMin", 3}};

// The traces start at 22:13:20, in a minute of that grid.
TEST(Scheduler, TimesAPulseFromTheCallAfterItsStart) {
  const TimeZone zone("UTC");
  trace("Scheduler", kGrid, R"(
    t     Enable | Q Hour Minute State #clock | TmpTime    TmpQ State _OldMin4SaveData
    -21.5    1   | 0  22   12      0     2    | 3487896580  0     0      12
    -21      1   | 0  22   12      0     2    | 2147483647  0     0      12        reads as a signed number
    0        1   | 1  22   13      1     3    | 1700000000  1     1      13
    298      0   | 0   0    0      1     1    | 1700000000  0     1      13        goes on in the dark
    299      1   | 1  22   18      1     3    | 1700000000  1     1      13
    300      1   | 0  22   18      0     3    | 1700000000  0     0      18        exactly its length
    880      1   | 1  22   28      1     3    | 1700000880  1     1      28
    5380     1   | 0  23   43      0     3    | 1700000880  0     0      43        its time is over, and the minute used up
    5399     1   | 0  23   43      0     2    | 1700000880  0     0      43
  )");
}

TEST(Scheduler, StartsOnTheEdgeOfEventInAnyState) {
  const TimeZone zone("UTC");
  trace("Scheduler", kGrid, R"(
    t     Enable Event IntervalMin | Q State #clock | TmpTime    State _OldMin4SaveData TmpEventOld
    400     0      1      7        | 0   0     1    | 3488318080   0       0     0       not seen while disabled
    401     1      1      7        | 1   1     4    | 1700000401   1       0     1       still an edge, and timed at once
    501     1      2      7        | 1   1     3    | 1700000401   1       0     2
    502     1      1      7        | 1   1     3    | 1700000401   1       0     1       2 to 1 is no edge
    503     1      0.9    7        | 1   1     3    | 1700000401   1       0     0
    600     1      1.9    7        | 1   1     4    | 1700000600   1       0     1       restarts the running one
    899     1      1      7        | 1   1     3    | 1700000600   1       0     1
    900     1      0      15       | 0   0     3    | 1700000600   0       28    0       ends in a minute of the grid
    911     1      1      15       | 1   1     4    | 1700000911   1       28    1       but Event starts there
  )");
}

TEST(Scheduler, PulsesOfNoLengthOrOfTheGreatest) {
  const TimeZone zone("UTC");
  trace("Scheduler", kGrid, R"(
    t     Event LeadMin DurationMin | Q State | TmpTime      _OldMin4SaveData
    0       0      2       -2       | 1   1   | 1700000000   13     a pulse by the clock shows for one call
    1       0      2       -2       | 0   0   | 1700000000   13
    2       1      2       -2       | 0   0   | 1700000002   13     one by Event does not
    3       0      2    2147483647  | 0   0   | -            13
    6       1      2    2147483647  | 1   1   | 1700000006   13
    1e8     0  2147483647 2147483647 | 1  1   | 1700000006   13
    1e8     0      0     71582789   | 1   1   | 1700000006   13     4294967340 s are not 44 s
    1e8     0  -2147483648 -2147483648 | 0 0  | 1700000006   0      1800000000 is 08:00:00
  )");
}

TEST(Scheduler, TakesAStepOfTheClockForTimeOfThePulse) {
  const TimeZone zone("UTC");
  trace("Scheduler", kGrid, R"(
    t      | Q State Minute | TmpTime    _OldMin4SaveData
    0      | 1   1    13    | 1700000000  13
    -7200  | 1   1    13    | 1700000000  13     set back by two hours: lasts as much longer
    299    | 1   1    18    | 1700000000  13
    36000  | 0   0    13    | 1700000000  13     set forward, or switched off for ten hours
  )");
  if (sizeof(time_t) == 4) return;  // the times below are beyond its end
  trace("Scheduler", kGrid, R"(
    utc                 TmpTime=   State= | Q State | TmpTime
    2038-01-19T03:19:06 2200000000    1   | 1   1   | 2147483647     the greatest stamp that reads back
    2038-01-19T03:19:07     -         -   | 0   0   | 2147483647
  )");
}

TEST(Scheduler, KeepsStoredNumbersThatItDoesNotKnow) {
  const TimeZone zone("UTC");
  trace("Scheduler", kGrid, R"(
    t   TmpTime= TmpQ= State= TmpEventOld= Event | Q State #clock | TmpTime    TmpQ State _OldMin4SaveData
    0      -5      3      7        2         0   | 3   7     2    | 4294967291  3     7      0
    1      -       -      -        -         1   | 1   1     4    | 1700000001  1     1      0
    -60    -       3      -        -         0   | 3   0     2    | -           3     0      12
  )");
}
