#include <gtest/gtest.h>

#include "tests/support/rig.h"

namespace {

constexpr const char* kCentralEurope = "CET-1CEST,M3.5.0,M10.5.0/3";

// The traces start on the 14th, at 22:13:20 UTC.
TEST(RunHours, CountsWholeMinutesAndRoundsTheLastOne) {
  const TimeZone zone("UTC");
  trace("RunHours", {}, R"(
    t    InSignal | TodayTotal #clock | TmpTime  TmpMints OldInSignal OldDay
    0       1     |   0         2     | 1700000000  0        1          14     a start counts nothing
    59      1     |   0         2     | 1700000000  0        1          14
    60      1     |   1         3     | 1700000060  1        1          14
    119     1     |   1         2     | 1700000060  1        1          14
    127.9   1.7   |   2         3     | 1700000127  2        1          14     the next one is timed from here
    156.9   0.5   |   2         1     | 1700000127  2        0          14     29 s do not count at a stop
    1e6     0     |   2         0     | 1700000127  2        0          14
    1e6     1     |   2         1     | 1701000000  0        1          14     the day is not looked at
    1000030 0     |   3         1     | 1701000000  1        0          14     30 s do
    1000031 1     |   3         1     | 1701000031  0        1          14
    1000090 0     |   4         1     | 1701000031  1        0          14
  )");
}

TEST(RunHours, CountsHoursWithinOneRun) {
  const TimeZone zone("UTC");
  Rig rig("RunHours", {{"InSignal", 1}, {"TotalPreset", 100}, {"MaintenancePreset", 10}});
  for (int second = 0; second <= 13800; second += 30) rig.call_at(kTraceStart - 50000 + second);
  trace(rig, R"(
    t     InSignal | TodayTotal MaintenanceHour TotalHour | TmpMints
    -36199    0    |   230           13           103     |  50      3 h 50 min
    -30000    1    |   230           13           103     |  0       are 3 h for good
    -29001    0    |   231           13           103     |  1       a call counts one minute at most
  )");
  rig.write_records({{"OldInSignal", "1"}, {"TmpMints", "59"}, {"TmpTime", "1700000000"}});
  trace(rig, R"(
    t  InSignal | TodayTotal MaintenanceHour TotalHour | TmpMints
    30    0     |     1           1             1      |   0      the stop completes the hour
  )");
}

TEST(RunHours, RollsTheDayWhileRunning) {
  const TimeZone zone(kCentralEurope);
  trace("RunHours", {}, R"(
    utc                 InSignal | TodayTotal YesterdayTotal #clock | OldDay
    2026-01-30T22:00:00    1     |  0           0              2    |  30
    2026-01-30T22:59:59    1     |  1           0              3    |  30
    2026-01-30T23:00:00    1     |  0           1              2    |  31     local midnight
    2026-01-31T22:58:00    1     |  1           1              3    |  31
    2026-01-31T22:59:30    1     |  2           1              3    |  31
    2026-01-31T23:00:30    1     |  0           3              3    |  1      its minute goes to yesterday
    2026-02-01T12:00:00    1     |  1           3              3    |  1
    2026-02-01T22:59:50    0     |  2           3              1    |  1
    2026-02-02T12:00:00    0     |  2           3              0    |  1
    2026-02-04T12:00:00    1     |  2           3              1    |  1      a start does not look
    2026-02-04T12:00:01    1     |  0           2              2    |  4      the last running day, not idle ones
    2026-02-04T12:01:01    1     |  1           2              3    |  4
    2026-02-04T12:01:02    0     |  1           2              1    |  4
    2026-03-04T12:00:00    1     |  1           2              1    |  4
    2026-03-04T12:01:00    1     |  2           2              3    |  4      the same day of the month
  )");
}

// From local midnight to local midnight, called once a minute.
TEST(RunHours, CountsDaysOf23To25Hours) {
  const TimeZone zone(kCentralEurope);
  const std::tuple<const char*, int, const char*> days[] = {
      {"2026-03-28T23:00:00", 23, "30"}, {"2026-10-24T22:00:00", 25, "26"},
      {"2026-02-27T23:00:00", 24, "1"},  {"2028-02-27T23:00:00", 24, "29"},
      {"2028-02-28T23:00:00", 24, "1"},  {"2026-12-30T23:00:00", 24, "1"}};
  for (const auto& [midnight, hours, next_day] : days) {
    SCOPED_TRACE(midnight);
    Rig rig("RunHours", {{"InSignal", 1}});
    const double start = utc(midnight);
    for (int minute = 0; minute < hours * 60; ++minute) rig.call_at(start + minute * 60);
    EXPECT_EQ(rig.out("TodayTotal"), hours * 60 - 1);
    EXPECT_EQ(rig.out("YesterdayTotal"), 0);
    rig.call_at(start + hours * 3600);
    EXPECT_EQ(rig.out("TodayTotal"), 0);
    EXPECT_EQ(rig.out("YesterdayTotal"), hours * 60);
    EXPECT_EQ(rig.out("TotalHour"), hours);
    EXPECT_EQ(rig.state("OldDay"), next_day);
  }
}

TEST(RunHours, CountsAnOutageOrAStepOfTheClockAsOneMinute) {
  const TimeZone zone("UTC");
  trace("RunHours", {}, R"(
    t     InSignal | TodayTotal YesterdayTotal | TmpTime    OldDay
    -50000   1     |   0             0         | 1699950000  14
    -21200   1     |   1             0         | 1699978800  14     off for 8 h
    -21171   0     |   1             0         | 1699978800  14
    -21000   1     |   1             0         | 1699979000  14
    -1000    0     |   2             0         | 1699979000  14     stopped meanwhile
    0        1     |   2             0         | 1700000000  14
    -59      1     |   2             0         | 1700000000  14     set back
    -60      1     |   3             0         | 1699999940  14
    0        1     |   4             0         | 1700000000  14
    -100000  1     |   0             5         | 1699900000  13     set back over midnight
    0        1     |   0             1         | 1700000000  14     and forward
    -30      0     |   1             1         | 1700000000  14
  )");
}

TEST(RunHours, TakesThePresetsOnlyWithoutAFile) {
  const TimeZone zone("UTC");
  const Values presets = {{"InSignal", 1},
                          {"TodayPreset", 5.9},
                          {"YesterdayPreset", 6},
                          {"MaintenancePreset", 7},
                          {"TotalPreset", 8}};
  Rig rig("RunHours", presets);
  trace(rig, R"(
    t   TodayPreset | TodayTotal YesterdayTotal MaintenanceHour TotalHour #clock | OldDay TmpTime
    0       5.9     |     5           6                7            8       2    |  14    1700000000
    1       100     |     5           6                7            8       2    |  14    1700000000
  )");
  rig.write_bytes("");
  trace(rig, R"(
    t   InSignal | TodayTotal YesterdayTotal MaintenanceHour TotalHour #clock | OldDay TmpTime
    2     0      |     0           0                0            0       0    |  0      0
    3     1      |     0           0                0            0       1    |  0      1700000003
    4     1      |     0           0                0            0       2    |  14     1700000003   a day change
  )");
  rig.write_records({{"TmpTodayTotal", "9"}, {"OldInSignal", "1"}});
  trace(rig, R"(
    t   InSignal | TodayTotal YesterdayTotal #clock | OldDay TmpTime
    5     1      |     0          10           3    |  14    1700000005   TmpTime was 0
  )");
  Rig nowhere("RunHours", presets);
  nowhere.set_text(SCANBLOCKS_STATE_DIR, "/nonexistent");
  trace(nowhere, "t | TodayTotal #clock \n 0 | 5 2 \n 60 | 5 2 \n 120 | 5 2");
}

TEST(RunHours, ResetsMaintenanceHoursAfterTheCarry) {
  const TimeZone zone("UTC");
  Rig rig("RunHours", {{"Reset", 1}, {"MaintenancePreset", 7}, {"TotalPreset", 8}});
  trace(rig, R"(
    t  | MaintenanceHour TotalHour | ResetOld
    0  |      0             8      |  1         a new instance takes Reset 1 for an edge
  )");
  rig.write_records({{"ResetOld", "0"},
                     {"TmpMaintenanceHour", "7"},
                     {"TmpTotalHour", "8"},
                     {"TmpMints", "59"},
                     {"OldInSignal", "1"},
                     {"TmpTime", "1700000000"}});
  rig.set("InSignal", 1);
  trace(rig, R"(
    t  Reset | MaintenanceHour TotalHour | ResetOld TmpMints
    60  1.9  |      0             9      |   1        0
  )");
  rig.write_records({{"ResetOld", "1"},
                     {"TmpMaintenanceHour", "7"},
                     {"TmpMints", "59"},
                     {"OldInSignal", "1"},
                     {"TmpTime", "1700000000"}});
  trace(rig, R"(
    t  Reset | MaintenanceHour TotalHour | ResetOld
    60   1   |      8             1      |   1      held: counts on
    61   2   |      8             1      |   2
    62   1   |      8             1      |   1      2 to 1 is no edge
    63   0   |      8             1      |   0
    64   1   |      0             1      |   1
  )");
}

TEST(RunHours, TakesOtherNumbersForNoSignal) {
  const TimeZone zone("UTC");
  trace("RunHours", {}, R"(
    t    InSignal | TodayTotal #clock | TmpTime  TmpMints OldInSignal
    0       1     |   0         2     | 1700000000  0      1
    60      1     |   1         3     | 1700000060  1      1
    200     2     |   1         0     | 1700000060  1      2
    300     1     |   1         0     | 1700000060  1      1       no start
    301     1     |   2         3     | 1700000301  2      1       timed from the old minute
    400    -1     |   2         0     | 1700000301  2     -1
    401     0     |   2         0     | 1700000301  2      0       no stop
  )");
}

TEST(RunHours, ReadsCountersWithASignAndStampsWithout) {
  const TimeZone zone("UTC");
  Rig rig("RunHours");
  rig.write_records({{"TmpTodayTotal", "4294967290"},
                     {"TmpTotalHour", "2147483647"},
                     {"TmpMaintenanceHour", "-2"},
                     {"TmpyesterdayTotal", "x"},
                     {"TmpMints", "2147483647"},
                     {"TmpTime", "4294967356"},
                     {"OldDay", "14"}});
  trace(rig, R"(
    t  InSignal | TodayTotal MaintenanceHour TotalHour | TmpTodayTotal TmpMaintenanceHour TmpTime
    0     0     | 2147483647      -2     2147483647    | 2147483647       4294967294       60
    1     0     | 2147483647  2147483647 2147483647    | 2147483647       2147483647       60
  )");
  rig.write_records({{"TmpTodayTotal", "2147483647"},
                     {"TmpTotalHour", "2147483647"},
                     {"TmpMints", "59"},
                     {"OldInSignal", "1"}});
  trace(rig, R"(
    t  InSignal | TodayTotal  TotalHour  | TmpTodayTotal TmpTotalHour
    60    0     | -2147483648 -2147483648 | 2147483648    2147483648     beyond its limit
    61    0     | 2147483647  2147483647  | 2147483647    2147483647
  )");
}

}  // namespace
