#include "host/reporter.h"

#include <cstdio>

namespace scanhost {

void Reporter::fails(const char* reason, const char* consequence) {
  if (!failing_) std::fprintf(stderr, "%s: %s; %s\n", name_.c_str(), reason, consequence);
  failing_ = true;
}

void Reporter::works(const char* message) {
  if (failing_) std::fprintf(stderr, "%s: %s\n", name_.c_str(), message);
  failing_ = false;
}

}  // namespace scanhost
