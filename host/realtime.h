// The scan in real time: absolute deadlines on the monotonic clock.
#pragma once

#include <cstdint>
#include <optional>

#include "host/notify.h"
#include "host/program.h"
#include "host/scan.h"

namespace scanhost {

// Gives the process the priority and locks its memory as the program asks. Throws Failure.
void enter_real_time(const Program& program);

struct Limits {
  std::optional<std::uint64_t> scans;
  std::optional<Duration> length;  // of time: skipped deadlines count as well
};

// Scans at the deadlines start, start + period, ... until a stop is requested or a limit is
// reached. After every scan each deadline that has passed is one of the scans or of those skipped.
// `figures` gets the jitter and the overruns.
ScanCount scan_in_real_time(Scan& scan, Duration period, const Limits& limits, Notifier& notifier,
                            Figures* figures = nullptr);

}  // namespace scanhost
