#include "host/notify.h"

#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cinttypes>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include "host/problems.h"

namespace scanhost {
namespace {

constexpr std::chrono::seconds kWithoutWatchdog(10);  // between two lines of status

// Children, such as the shells of a probe, are not to speak for the host.
std::string take(const char* variable) {
  const char* value = std::getenv(variable);
  std::string text = value == nullptr ? "" : value;
  unsetenv(variable);
  return text;
}

std::optional<std::uint64_t> number(const std::string& text) {
  std::uint64_t value = 0;
  const char* end = text.data() + text.size();
  const auto [at, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || at != end) return std::nullopt;
  return value;
}

}  // namespace

Notifier::Notifier() {
  const std::string path = take("NOTIFY_SOCKET");
  const auto microseconds = number(take("WATCHDOG_USEC"));
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

  const bool ours = owner.empty() || number(owner) == static_cast<std::uint64_t>(getpid());
  if (microseconds && *microseconds < INT64_MAX / 1000 && ours)
    watchdog_ = std::chrono::microseconds(*microseconds);
  interval_ = watchdog_ > Nanoseconds::zero() ? watchdog_ / 2 : kWithoutWatchdog;
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
