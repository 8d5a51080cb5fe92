// When a scan happens.
#pragma once

#include "host/time.h"

namespace scanhost {

struct Moment {
  Time now;          // wall clock
  Duration elapsed;  // since the first scan, a multiple of the scan period
};

}  // namespace scanhost
