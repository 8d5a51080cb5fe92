/* A block library that takes its time and tells it. */
#include <time.h>

#include "pin.h"

#define EXPORTED __attribute__((visibility("default")))
EXPORTED void PID(const Pin* inputs, Pin* outputs);
EXPORTED void Clock(const Pin* inputs, Pin* outputs);

/* Takes Enable milliseconds for a call, and counts the calls. */
void PID(const Pin* inputs, Pin* outputs) {
  const struct timespec pause = {0, (long)(inputs[SCANBLOCKS_FIRST_VALUE].Value * 1e6)};
  nanosleep(&pause, NULL);
  outputs[0].Value += 1.0;
}

/* When it is called: milliseconds of the monotonic clock. */
void Clock(const Pin* inputs, Pin* outputs) {
  struct timespec now;
  (void)inputs;
  clock_gettime(CLOCK_MONOTONIC, &now);
  outputs[0].Value = (double)now.tv_sec * 1e3 + (double)now.tv_nsec / 1e6;
}
