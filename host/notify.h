// What the host tells the service manager that has started it, by the protocol of sd_notify:
// readiness, signs of life for its watchdog, a line of status, the end. Without NOTIFY_SOCKET in
// the environment nothing is sent.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <chrono>
#include <cstdint>

namespace scanhost {

struct ScanCount {
  std::uint64_t scans = 0;
  std::uint64_t overruns = 0;  // times that a deadline was skipped, or several in a row
  std::uint64_t skipped = 0;   // deadlines without a scan: the one before was not done, or the
                               // process was not let run
};

class Notifier {
 public:
  using Nanoseconds = std::chrono::nanoseconds;

  // Takes NOTIFY_SOCKET, WATCHDOG_USEC and WATCHDOG_PID out of the environment. Throws Failure for
  // a socket that cannot be one.
  Notifier();
  ~Notifier();
  Notifier(const Notifier&) = delete;
  Notifier& operator=(const Notifier&) = delete;

  // Time between two signs of life that the manager waits for; 0: it does not.
  Nanoseconds watchdog() const { return watchdog_; }

  // After each scan: the first one reports readiness, later ones a sign of life whenever a quarter
  // of the watchdog's time has passed, both with the count. With a scan of half that time, the
  // longest that `run` takes, three quarters pass at most between two signs. Never waits.
  void scanned(const ScanCount& count, Nanoseconds now);
  void stopping(const ScanCount& count);

 private:
  void send(const char* state, const ScanCount& count);

  int socket_ = -1;
  sockaddr_un address_{};
  socklen_t address_size_ = 0;
  Nanoseconds watchdog_{};
  Nanoseconds interval_{};
  Nanoseconds next_{};
  bool ready_ = false;
};

}  // namespace scanhost
