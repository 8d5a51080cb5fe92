#include "host/progress.h"

#include <unistd.h>

#include <cstdio>

#include "host/figures.h"
#include "host/time.h"

namespace scanhost {

Progress::Progress(std::uint64_t total)
    : total_(total),
      terminal_(isatty(STDERR_FILENO) != 0),
      start_(monotonic_ns()),
      next_(start_ + 1000000000u) {}

Progress::~Progress() {
  if (shown_) std::fputs("\r\033[K", stderr);
}

void Progress::show(std::uint64_t done) {
  constexpr std::uint64_t kScans = 256;  // the clock is not asked more often
  if (!terminal_ || done % kScans != 0 || done == 0) return;
  const std::uint64_t now = monotonic_ns();
  if (now < next_) return;
  next_ = now + 500000000u;
  shown_ = true;
  const double share = static_cast<double>(done) / static_cast<double>(total_);
  const double left = static_cast<double>(now - start_) / 1e9 / share * (1 - share);
  std::fprintf(stderr, "\r\033[K%3.0f %%, %s left", share * 100,
               format_duration(std::chrono::seconds(static_cast<long>(left) + 1)).c_str());
}

}  // namespace scanhost
