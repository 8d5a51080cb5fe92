/* The public header in C: it compiles without warnings, and its declarations hold. */
#include "scanblocks.h"

int header_is_usable_from_c(void);
int header_is_usable_from_c(void) {
  const scanblocks_block block = PID;
  return block != NULL && zelgetTime() >= 0 && sizeof ui2d == 8;
}
