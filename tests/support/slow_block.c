/* A block library of one block that takes its time: Enable milliseconds for a call. */
#include <time.h>

#include "pin.h"

__attribute__((visibility("default"))) void PID(const Pin* inputs, Pin* outputs);

void PID(const Pin* inputs, Pin* outputs) {
  const struct timespec pause = {0, (long)(inputs[SCANBLOCKS_FIRST_VALUE].Value * 1e6)};
  nanosleep(&pause, NULL);
  outputs[0].Value += 1.0;
}
