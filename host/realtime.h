// The scan in real time: absolute deadlines on the monotonic clock.
#pragma once

#include <cstdint>

#include "host/notify.h"
#include "host/program.h"
#include "host/scan.h"

namespace scanhost {

// Gives the process the priority and locks its memory as the program asks. Throws Failure.
void enter_real_time(const Program& program);

// Scans until a stop is requested or `scans` are done (0: no limit). `figures` gets the jitter
// and the overruns.
ScanCount scan_in_real_time(Scan& scan, Duration period, std::uint64_t scans, Notifier& notifier,
                            Figures* figures = nullptr);

}  // namespace scanhost
