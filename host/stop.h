// SIGINT, SIGTERM and SIGHUP ask for an end after the running scan.
#pragma once

#include <ctime>

namespace scanhost {

// From here on the three signals only set a mark; one that was ignored stays ignored. A closed pipe
// and a limit of the file size show as write errors.
void catch_stop_signals();
bool stop_requested();

// Sleeps until `deadline` on the monotonic clock. Returns at once when a stop is requested, also
// one that arrives while this function is being entered.
void sleep_until(const timespec& deadline);

}  // namespace scanhost
