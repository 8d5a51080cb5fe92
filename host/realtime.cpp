#include "host/realtime.h"

#include <sched.h>
#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>

#include "host/clock.h"
#include "host/stop.h"

namespace scanhost {
namespace {

using Nanoseconds = std::chrono::nanoseconds;

Nanoseconds monotonic_now() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return std::chrono::seconds(now.tv_sec) + Nanoseconds(now.tv_nsec);
}

timespec to_timespec(Nanoseconds time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  return {static_cast<time_t>(seconds.count()), static_cast<long>((time - seconds).count())};
}

}  // namespace

void enter_real_time(const Program& program) {
  if (program.lock_memory && mlockall(MCL_CURRENT | MCL_FUTURE) < 0)
    throw Failure(program.path + ": lock_memory = true: " + std::strerror(errno) +
                  "; run as root, with CAP_IPC_LOCK or a higher memlock limit");
  if (program.priority > 0) {
    sched_param parameters{};
    parameters.sched_priority = program.priority;
    if (sched_setscheduler(0, SCHED_FIFO, &parameters) < 0)
      throw Failure(program.path + ": priority = " + std::to_string(program.priority) + ": " +
                    std::strerror(errno) +
                    "; run as root, with CAP_SYS_NICE or a higher rtprio limit");
  }
}

ScanCount scan_in_real_time(Scan& scan, Duration period, const Limits& limits, Notifier& notifier,
                            Figures* figures) {
  ScanCount count;
  const Nanoseconds start = monotonic_now();
  Nanoseconds deadline = start;
  std::optional<std::uint64_t> overrun_after;  // this many scans
  const auto skip = [&](Nanoseconds::rep missed) {
    if (overrun_after != count.scans) ++count.overruns;
    overrun_after = count.scans;
    count.skipped += static_cast<std::uint64_t>(missed);
    deadline += missed * Nanoseconds(period);
  };
  while (!stop_requested()) {
    const Nanoseconds late = std::max(monotonic_now() - deadline, Nanoseconds::zero());
    if (figures != nullptr) figures->jitter.add(static_cast<std::uint64_t>(late.count()));
    // The process was not let run: the scan is that of the last deadline.
    if (late >= period) skip(late / Nanoseconds(period));
    scan.step(
        {.now = wall_clock(), .elapsed = std::chrono::duration_cast<Duration>(deadline - start)});
    ++count.scans;
    deadline += period;
    const Nanoseconds now = monotonic_now();
    if (now > deadline) skip((now - deadline) / Nanoseconds(period) + 1);
    notifier.scanned(count, now);
    if (count.scans == limits.scans || (limits.length && deadline - start >= *limits.length)) break;
    sleep_until(to_timespec(deadline));
  }
  notifier.stopping(count);
  if (figures != nullptr) {
    figures->overruns = count.overruns;
    figures->skipped = count.skipped;
  }
  return count;
}

}  // namespace scanhost
