#include "tests/support/rig.h"

TEST(RawAFilter, PassesChangesFromTheDeadBandOn) {
  trace("RawAFilter", {}, R"(
    InSignalOld= TmpQ= Enable InSignal DeadBand |  Q   | InSignalOld TmpQ
        -         -      1      0.4      1      |  0   |  0.000000   0.000000     a new instance starts from 0
        -         -      1     10        2      | 10   | 10.000000   10.000000
        -         -      1     11.5      2      | 10   | 10.000000   10.000000
        -         -      1     12        2      | 12   | 12.000000   12.000000    exactly the dead band
        -         -      1.9   10        2      | 10   | 10.000000   10.000000
        -         -      1     10.1      0      | 10.100000381469727 | 10.100000 10.100000   single precision
        -         -      1     50       -1      | 50   | 50.000000   50.000000
        -         -      1     nan       1      | 50   | 50.000000   50.000000
        -         -      1     60      nan      | 50   | 50.000000   50.000000
        -         -      2     60        1      |  0   | 50.000000   0.000000
       50        50      0      0.5      1      |  0   | 50.000000   0.000000
        -         -      1      0.5      1      | 50   | 50.000000   50.000000    compared with the 0 of the disabled call
        -         -      1      0.5      1      |  0.5 | 0.500000    0.500000
  )");
}
