/* The public header in C: it compiles without warnings, and its declarations hold. */
#include "scanblocks.h"

/* Each listed name is declared, a block with the signature of blocks. */
#define BLOCK_NAME(name) name,
#define FUNCTION_NAME(name)
#define DATA_NAME(name)
static const scanblocks_block blocks[] = {
#include "names.def"
};
#undef BLOCK_NAME
#undef FUNCTION_NAME
#undef DATA_NAME
#define BLOCK_NAME(name)
#define FUNCTION_NAME(name) sizeof(&name),
#define DATA_NAME(name) sizeof(name),
static const size_t others[] = {
#include "names.def"
};

int header_is_usable_from_c(void);
int header_is_usable_from_c(void) {
  return blocks[0] == PID && others[0] == sizeof(&int2hex) && zelgetTime() >= 0 && sizeof ui2d == 8;
}
