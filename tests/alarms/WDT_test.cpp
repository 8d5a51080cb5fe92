#include "tests/support/rig.h"

TEST(WDT, ExpiresCountedFromTheFirstUnchangedCall) {
  trace("WDT", {}, R"(
    t    Signal Timeout | Q #clock | SignalOld TmpTime    TmpQ State
     0     3.2    2999  | 0   1    |     3     1700000000   0    0
     1     3.8    2999  | 0   3    |     3     1700000001   0   10     3 is unchanged
     2.9   3      2999  | 0   2    |     3     1700000001   0   10
     3     3      2999  | 1   2    |     3     1700000001   1   10
    10    -3      2999  | 0   1    |    -3     1700000001   0    0     the stamp stays
    20    -3      2999  | 0   3    |    -3     1700000020   0   10
    18    -3      2999  | 1   2    |    -3     1700000020   1   10     a clock set back counts
    20    -3      1000  | 0   2    |    -3     1700000020   0   10
    20    -3       nan  | 1   2    |    -3     1700000020   1   10     no time at all
  )");
}

TEST(WDT, TakesFreshReadingsAndHoldsInAForeignState) {
  trace("WDT", {{"Timeout", 1000}}, R"(
    t #step SignalOld= TmpTime= TmpQ= State= Signal | Q #clock | TmpTime    TmpQ State
    0   1       -         -       -     -      0    | 1   3    | 1700000001   1    10    unchanged at once; readings: default, stamp, time
    2   -       2         9       7     5      2    | 7   1    |     9        7     5
    3   -       -         -       -     -      3    | 0   1    |     9        0     0
  )");
}
