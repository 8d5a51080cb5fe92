// The wall clock of the blocks: the real one, or a simulated one that stands still until it is set.
#pragma once

#include "host/time.h"

namespace scanhost {

Time wall_clock();

// From the first call on, the wall clock is `now`.
void set_simulated_clock(Time now);

}  // namespace scanhost
