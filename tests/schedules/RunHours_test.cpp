// Whole days and years, over the changes of summer time, are held against a calendar by
// calendar.py.
#include "tests/support/rig.h"

// The traces start on the 14th, at 22:13:20 UTC.
TEST(RunHours, CountsWholeMinutesAndRoundsTheLastOne) {
  const TimeZone zone("UTC");
  trace("RunHours", {}, R"(
    t    InSignal | TodayTotal #clock | TmpTime  TmpMints OldInSignal OldDay
    0       1     |   0         2     | 1700000000  0        1          14     a start counts nothing
    59      1     |   0         2     | 1700000000  0        1          14
    60      1     |   1         3     | 1700000060  1        1          14
    127.9   1.7   |   2         3     | 1700000127  2        1          14     the next one is timed from here
    156.9   0.5   |   2         1     | 1700000127  2        0          14     29 s do not count at a stop
    5000    1     |   2         1     | 1700005000  0        1          14
    5030    0     |   3         1     | 1700005000  1        0          14     30 s do
    5040    1     |   3         1     | 1700005040  0        1          14
    5200    2     |   3         0     | 1700005040  0        2          14     no signal
    5201    1     |   3         0     | 1700005040  0        1          14     and no start
    5202    1     |   4         3     | 1700005202 1        1          14
    5300    -1    |   4         0     | 1700005202 1       -1          14
    5301    0     |   4         0     | 1700005202 1        0          14     no stop
  )");
}

TEST(RunHours, CountsHoursWithinOneRun) {
  Rig rig("RunHours", {{"InSignal", 1}, {"TotalPreset", 100}, {"MaintenancePreset", 10}});
  for (int second = 0; second <= 13800; second += 30) rig.call_at(kTraceStart - 20000 + second);
  trace(rig, R"(
    t     OldInSignal= TmpMints= TmpTime=   InSignal | MaintenanceHour TotalHour | TmpMints
    -6199      -           -         -         0     |      13           103     |  50         3 h 50 min
    -6000      -           -         -         1     |      13           103     |  0          are 3 h for good
    0          -           -         -         0     |      13           103     |  1          a call counts one minute at most
    29         1          58     1700000000    0     |       0             0     |  58
    30         1          58     1700000000    0     |       0             0     |  59
    30         1          59     1700000000    0     |       1             1     |  0
  )");
}

TEST(RunHours, RollsTheDayWhileRunning) {
  const TimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  trace("RunHours", {}, R"(
    utc                 InSignal | TodayTotal YesterdayTotal #clock | OldDay
    2026-01-30T22:00:00    1     |  0           0              2    |  30
    2026-01-30T22:59:59    1     |  1           0              3    |  30
    2026-01-30T23:00:00    1     |  0           1              2    |  31     local midnight
    2026-01-31T22:59:30    1     |  1           1              3    |  31
    2026-01-31T23:00:30    1     |  0           2              3    |  1      its minute goes to yesterday
    2026-02-01T22:59:50    0     |  1           2              1    |  1
    2026-02-04T12:00:00    1     |  1           2              1    |  1      a start does not look
    2026-02-04T12:00:01    1     |  0           1              2    |  4      the last running day, not idle ones
    2026-02-04T12:01:02    0     |  1           1              1    |  4
    2026-03-04T12:00:00    1     |  1           1              1    |  4
    2026-03-04T12:01:00    1     |  2           1              3    |  4      the same day of the month
  )");
}

TEST(RunHours, CountsAnOutageOrAStepOfTheClockAsOneMinute) {
  const TimeZone zone("UTC");
  trace("RunHours", {}, R"(
    t     InSignal | TodayTotal YesterdayTotal | TmpTime    OldDay
    -50000   1     |   0             0         | 1699950000  14
    -21200   1     |   1             0         | 1699978800  14     off for 8 h
    -1000    0     |   2             0         | 1699978800  14     stopped meanwhile
    0        1     |   2             0         | 1700000000  14
    -59      1     |   2             0         | 1700000000  14     set back
    -60      1     |   3             0         | 1699999940  14
    -100000  1     |   0             4         | 1699900000  13     set back over midnight
    0        1     |   0             1         | 1700000000  14     and forward
    -30      0     |   1             1         | 1700000000  14
  )");
}

TEST(RunHours, TakesThePresetsOnlyWithoutAFile) {
  const TimeZone zone("UTC");
  trace("RunHours", {{"InSignal", 1}, {"YesterdayPreset", 6}}, R"(
    t TmpTodayTotal= OldInSignal= TodayPreset | TodayTotal YesterdayTotal #clock | OldDay TmpTime
    0       -             -            5.9    |     5           6           2    |  14    1700000000
    1       -             -          100      |     5           6           2    |  14    1700000000
    5       9             1          100      |     0          10           3    |  14    1700000005   TmpTime and OldDay were 0
  )");
}

TEST(RunHours, ResetsMaintenanceHoursAfterTheCarry) {
  trace("RunHours", {{"InSignal", 1}, {"MaintenancePreset", 7}}, R"(
    t  ResetOld= TmpMaintenanceHour= TmpMints= OldInSignal= TmpTime=   Reset | MaintenanceHour TotalHour | ResetOld
    0     -             -                -         -           -         1   |      0             0      |   1
    60    0             7               59         1       1700000000    1.9 |      0             1      |   1
    60    1             7               59         1       1700000000    1   |      8             1      |   1      held: counts on
    61    -             -                -         -           -         2   |      8             1      |   2
    62    -             -                -         -           -         1   |      8             1      |   1      2 to 1 is no edge
    63    -             -                -         -           -         0   |      8             1      |   0
    64    -             -                -         -           -         1   |      0             1      |   1
  )");
}

TEST(RunHours, ReadsCountersWithASignAndStampsWithout) {
  trace("RunHours", {}, R"(
    t  TmpTodayTotal= TmpMaintenanceHour= TmpMints=  TmpTime=   InSignal | TodayTotal MaintenanceHour | TmpTodayTotal TmpMaintenanceHour TmpTime
    0   4294967290           -2           2147483647 4294967356    0     | 2147483647      -2         | 2147483647       4294967294       60
    1       -                 -               -          -         0     | 2147483647  2147483647     | 2147483647       2147483647       60
    2       -                 -               -          -         1     | 2147483647  2147483647     | -                -                1700000002
    62      -                 -               -          -         0     | -2147483648 2147483647     | 2147483648       2147483647       1700000002
  )");
}
