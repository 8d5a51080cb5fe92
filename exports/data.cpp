// Seven data objects that hosts may look up by name. No block uses them.
#include "exports/scanblocks.h"

#include "frame/block.h"

extern "C" {
SCANBLOCKS_EXPORT unsigned char ub2f[4];
SCANBLOCKS_EXPORT unsigned char i2b[2];
SCANBLOCKS_EXPORT unsigned char ui2f[4];
SCANBLOCKS_EXPORT unsigned char ub2l[4];
SCANBLOCKS_EXPORT unsigned char ul2us[4];
SCANBLOCKS_EXPORT unsigned char ui2l[4];
SCANBLOCKS_EXPORT unsigned char ui2d[8];
}
