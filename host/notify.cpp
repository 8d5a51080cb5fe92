#include "host/notify.h"

#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "host/number.h"
#include "host/problems.h"

namespace scanhost {
namespace {

constexpr std::chrono::seconds kWithoutWatchdog(10);  // between two lines of status
constexpr double kLongestWatchdog = 9e15;             // us; what is longer is none

// Children, such as the shells of a probe, are not to speak for the host.
std::string take(const char* variable) {
  const char* value = std::getenv(variable);
  std::string text = value == nullptr ? "" : value;
  unsetenv(variable);
  return text;
}

}  // namespace

Notifier::Notifier() {
  const std::string path = take("NOTIFY_SOCKET");
  const double microseconds = parse_number(take("WATCHDOG_USEC")).value_or(0.0);
  const std::string owner = take("WATCHDOG_PID");
  if (path.empty()) return;

  const bool abstract = path[0] == '@';
  if ((!abstract && path[0] != '/') || path.size() >= sizeof address_.sun_path)
    throw Failure("NOTIFY_SOCKET=" + path + ": not a path of at most " +
                  std::to_string(sizeof address_.sun_path - 1) +
                  " characters that begins with / or @");
  address_.sun_family = AF_UNIX;
  std::memcpy(address_.sun_path, path.data(), path.size());
  if (abstract) address_.sun_path[0] = '\0';
  // The name of an abstract socket ends where the address does.
  address_size_ =
      static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size() + (abstract ? 0 : 1));
  socket_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (socket_ < 0) throw Failure("NOTIFY_SOCKET=" + path + ": " + std::strerror(errno));

  const bool ours = owner.empty() || parse_number(owner) == getpid();
  if (ours && microseconds >= 1.0 && microseconds < kLongestWatchdog)
    watchdog_ = std::chrono::microseconds(static_cast<std::int64_t>(microseconds));
  interval_ = watchdog_ > Nanoseconds::zero() ? watchdog_ / 4 : kWithoutWatchdog;
}

Notifier::~Notifier() {
  if (socket_ >= 0) close(socket_);
}

void Notifier::scanned(const ScanCount& count, Nanoseconds now) {
  if (socket_ < 0 || (ready_ && now < next_)) return;
  send(!ready_ ? "READY=1\nWATCHDOG=1\n" : "WATCHDOG=1\n", count);
  ready_ = true;
  next_ = now + interval_;
}

void Notifier::stopping(const ScanCount& count) {
  if (socket_ >= 0) send("STOPPING=1\n", count);
}

// A message that is lost is made up for by the next one.
void Notifier::send(const char* state, const ScanCount& count) {
  char text[160];
  const int length = std::snprintf(text, sizeof text,
                                   "%sSTATUS=%" PRIu64 " scans, %" PRIu64 " overruns, %" PRIu64
                                   " deadlines skipped\n",
                                   state, count.scans, count.overruns, count.skipped);
  sendto(socket_, text, static_cast<std::size_t>(length), MSG_NOSIGNAL,
         reinterpret_cast<const sockaddr*>(&address_), address_size_);
}

}  // namespace scanhost
