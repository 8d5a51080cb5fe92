#include "tests/support/rig.h"

const Values kTimes = {
    {"Enable", 1}, {"ChangeWindow", 1000}, {"MaxChanges", 3}, {"FreezTime", 5000}};

TEST(ChatterFilter, FreezesAtTheLastGoodValue) {
  trace("ChatterFilter", kTimes, R"(
    t      #step InSignal | Q V ChangeNum #clock | TmpTime       TmpQLastGood TmpFreezTime  TmpState
    0        -      1     | 1 0    1        2    | 1700000000000      0       0                0     0 came before the first
    0.1      -      0.9   | 0 0    2        2    | 1700000000000      0       0                0
    0.2      -      1.2   | 1 0    3        2    | 1700000000000      0       0                0
    1        -      1     | 1 0    3        2    | 1700000000000      0       0                0     the last of the window
    1.001    -      0     | 0 0    3        3    | 1700000000000      0       1700000001001    1     V comes one call later
    6.001    -      1     | 0 1    3        2    | 1700000000000      0       1700000001001    1
    6.002    -      1     | 0 0    0        3    | 1700000006002      0       1700000001001    0     still the frozen value
    6.003    -      1     | 1 0    0        2    | 1700000006002      0       1700000001001    0
    6.1      -      0     | 0 0    1        2    | 1700000006002      0       1700000001001    0
    6.2      -      7     | 7 0    2        2    | 1700000006002      0       1700000001001    0
    7.003  0.001    8     | 8 0    0        3    | 1700000007005      8       1700000001001    0     calm; no change counted here, a fresh stamp
    7.1      -      1     | 1 0    1        2    | -                  8       1700000001001    0
    7.3      -      2     | 2 0    2        2    | -                  8       1700000001001    0
    7.4      -     -2     | -2 0   3        2    | -                  8       1700000001001    0
    8.006  0.001    3     | 8 0    3        3    | 1700000007005      8       1700000008008    1
    13.009 0.001    3     | 8 0    0        3    | 1700000013011      8       1700000008008    0
  )");
}

TEST(ChatterFilter, KeepsAllButTheInputWhileDisabledAndInAForeignState) {
  trace("ChatterFilter", kTimes, R"(
    t   TmpState= TmpQ= TmpV= TmpChangeNum= TmpQLastGood= TmpFreezTime= Enable InSignal | Q V ChangeNum #clock | InSignalOld TmpQ TmpState
    1      1       -     1        4             8         1700000000000   1       6     | 8 1    4        2    |     6        8      1
    2      -       -     -        -             -               -         0.9     7     | 0 1    4        1    |     7        0      1
    3      -       -     -        -             -               -         1.5     6     | 8 1    4        2    |     6        8      1
    4      -       -     -        -             -               -         2       5     | 0 1    4        1    |     5        0      1
    9      -       -     -        -             -               -         1       6     | 0 0    0        3    |     6        0      0     the stored 0 at the end
    9.1    -       -     -        -             -               -         0       5     | 0 0    0        1    |     5        0      0
    9.2    -       -     -        -             -               -         1       6     | 6 0    1        2    |     6        6      0
    19     2       4     3       -6             -               -         1       1     | 4 3   -6        1    |     1        4      2     a foreign state stays
  )");
}

TEST(ChatterFilter, TakesSettingsAtAndBelowZeroAndSigned64BitTimes) {
  trace("ChatterFilter", {{"Enable", 1}, {"InSignal", 1}}, R"(
    t     TmpTime=      TmpChangeNum= ChangeWindow MaxChanges FreezTime | Q V ChangeNum | TmpState TmpQLastGood
    0     1700000000000     0             -1           1        -1      | 1 0    0      |    0         1     every call ends a window
    0     -                 -             -1           0        -1      | 1 0    0      |    1         1     chatter without any change
    0     -                 -             -1           0        -1      | 1 0    0      |    0         1     the next call ends the freeze
    0     -                 -              0           1         0      | 1 0    0      |    0         1     not before a millisecond has passed
    0.001 -                 -              0          -5         0      | 1 0    0      |    1         1
    0.001 -                 -              0          -5         0      | 1 1    0      |    1         1
    0.002 -                 -              0          -5         0      | 1 0    0      |    0         1
    0     1697852516353     1         2147483647       1         0      | 1 0    2      |    0         0
    0     1697852516352     1         2147483647       1         0      | 0 0    1      |    1         0
    0     1800000000000     1              0           1         0      | 1 0    2      |    0         0     set back
    0     letters           1         2147483647       1         0      | 0 0    1      |    1         0
  )");
}
