/* Pin: one input or one output of a block. Plain C, shared by the library and every host. */
#ifndef SCANBLOCKS_PIN_H
#define SCANBLOCKS_PIN_H

#include <stddef.h>
#include <stdint.h>

/*
 * Inputs and outputs are arrays of Pin, 80 bytes from one pin to the next. The host owns
 * both arrays. A block reads Text of the inputs 0 to 4 and Value of the inputs from 5 on, and
 * writes Value of its outputs; it never touches Header, nor Text of an output.
 */
typedef struct Pin {
  uint32_t Header[2]; /* the host's own */
  double Value;       /* IEEE 754 double in the byte order of the machine */
  char Text[64]; /* at most 63 characters and a NUL; a missing NUL is read as a 64th byte of 0 */
} Pin;

#ifdef __cplusplus
#define SCANBLOCKS_ASSERT(condition, text) static_assert(condition, text)
#else
#define SCANBLOCKS_ASSERT(condition, text) _Static_assert(condition, text)
#endif

SCANBLOCKS_ASSERT(sizeof(Pin) == 80, "a pin is 80 bytes");
SCANBLOCKS_ASSERT(offsetof(Pin, Header) == 0, "Header comes first");
SCANBLOCKS_ASSERT(offsetof(Pin, Value) == 8, "Value stands at byte 8");
SCANBLOCKS_ASSERT(offsetof(Pin, Text) == 16, "Text stands at byte 16");

/* The header pins: texts that name an instance. The inputs 3 and 4 are reserved and not read. */
enum {
  SCANBLOCKS_STATE_DIR = 0,    /* directory of the state files */
  SCANBLOCKS_INSTANCE_TAG = 1, /* name of the block instance */
  SCANBLOCKS_GROUP_TAG = 2,    /* name of the group that the instance belongs to */
  SCANBLOCKS_FIRST_VALUE = 5   /* the first value pin of every block */
};

#endif
