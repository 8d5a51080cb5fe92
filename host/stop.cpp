#include "host/stop.h"

#include <atomic>
#include <cerrno>
#include <csignal>

namespace scanhost {
namespace {

volatile std::sig_atomic_t stop = 0;
// The kernel reads the deadline when the sleep begins: a signal that comes earlier moves it to the
// past, one that comes later interrupts the sleep. So none is lost between test and sleep.
timespec sleep_deadline;

void request_stop(int) {
  stop = 1;
  sleep_deadline = {};
}

}  // namespace

void catch_stop_signals() {
  struct sigaction action {};
  action.sa_handler = request_stop;
  action.sa_flags = SA_RESTART;
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction old {};
    if (sigaction(number, nullptr, &old) == 0 && old.sa_handler != SIG_IGN)
      sigaction(number, &action, nullptr);
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

bool stop_requested() { return stop != 0; }

void sleep_until(const timespec& deadline) {
  sleep_deadline = deadline;
  std::atomic_signal_fence(std::memory_order_seq_cst);
  while (stop == 0 &&
         clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &sleep_deadline, nullptr) == EINTR) {
  }
}

}  // namespace scanhost
