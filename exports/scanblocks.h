/*
 * scanblocks: function blocks for small Linux controllers. The interface for hosts, in C and C++.
 *
 * A block is a function. The host fills an array of input pins, calls the block once per scan and
 * takes the results from an array of output pins:
 *
 *     Pin in[14] = {0}, out[2] = {0};
 *     strcpy(in[SCANBLOCKS_STATE_DIR].Text, "/data/state");
 *     strcpy(in[SCANBLOCKS_GROUP_TAG].Text, "AHU1");
 *     strcpy(in[SCANBLOCKS_INSTANCE_TAG].Text, "Loop3");
 *     in[5].Value = 1.0;
 *     ...
 *     PID(in, out);
 *
 * Arrays    The host owns both arrays and keeps them valid during the call; a block keeps no
 *           pointer. The arrays carry no length: there must be one input pin more than the highest
 *           input number of the block, and as many output pins as it has outputs. The comment at
 *           each block below names both counts.
 * Pins      The inputs 0, 1 and 2 are texts (pin.h); values start at input 5. Numbers travel as
 *           doubles. An integer input is truncated toward zero and saturates at the signed 32-bit
 *           limits; not-a-number counts as 0. A flag input is on from 1.0 up to but not including
 *           2.0, where nothing else is said. A flag output is exactly 1.0 or 0.0.
 * Errors    A block returns nothing and reports nothing. Every input leads to a defined output.
 * Memory    A block that remembers keeps its memory in the file
 *               StateDir "/" block "_" GroupTag "_" InstanceTag ".dat"
 *           read at the start of each call and overwritten before its end. The directory must
 *           exist. Two instances are the same instance if block and all three texts are equal.
 *           Where no file can be made a block still computes, each time as on its first call.
 * Threads   Different instances may be called from different threads at the same time. One
 *           instance must not be called twice at the same time. The probes ReadFreeRAM and
 *           ReadFreeSD use fixed file names: one call at a time in the whole system.
 * Clock     Blocks ask gettimeofday through the dynamic symbol: a host that defines it supplies
 *           the time.
 */
#ifndef SCANBLOCKS_H
#define SCANBLOCKS_H

#include "pin.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The signature of every block, for hosts that look the names up with dlsym. */
typedef void (*scanblocks_block)(const Pin* inputs, Pin* outputs);

/* Control */
void PID(const Pin* inputs, Pin* outputs);        /* 14 inputs, 2 outputs */
void Integral(const Pin* inputs, Pin* outputs);   /* 8 inputs, 1 output */
void Derivative(const Pin* inputs, Pin* outputs); /* 7 inputs, 1 output */

/* Signal conditioning */
void Scale(const Pin* inputs, Pin* outputs);         /* 11 inputs, 2 outputs */
void NLScale(const Pin* inputs, Pin* outputs);       /* 27 inputs, 2 outputs */
void Filter(const Pin* inputs, Pin* outputs);        /* 10 inputs, 1 output */
void RawAFilter(const Pin* inputs, Pin* outputs);    /* 8 inputs, 1 output */
void RawAFilterLP(const Pin* inputs, Pin* outputs);  /* 8 inputs, 1 output */
void ChatterFilter(const Pin* inputs, Pin* outputs); /* 10 inputs, 3 outputs */
void Hystersis(const Pin* inputs, Pin* outputs);     /* 10 inputs, 2 outputs */

/* Drives */
void Drive1(const Pin* inputs, Pin* outputs);   /* 18 inputs, 4 outputs */
void Drive1V2(const Pin* inputs, Pin* outputs); /* 14 inputs, 5 outputs */
void Drive2(const Pin* inputs, Pin* outputs);   /* 19 inputs, 5 outputs */

/* Alarms and supervision */
void AAlarm(const Pin* inputs, Pin* outputs); /* 14 inputs, 5 outputs */
void DAlarm(const Pin* inputs, Pin* outputs); /* 9 inputs, 1 output */
void AWatch(const Pin* inputs, Pin* outputs); /* 11 inputs, 1 output */
void DWatch(const Pin* inputs, Pin* outputs); /* 11 inputs, 1 output */
void WDT(const Pin* inputs, Pin* outputs);    /* 7 inputs, 1 output */

/* Time schedules and counters */
void Scheduler(const Pin* inputs, Pin* outputs); /* 10 inputs, 4 outputs */
void RunHours(const Pin* inputs, Pin* outputs);  /* 11 inputs, 4 outputs */

/* Register conversion */
void int2Float(const Pin* inputs, Pin* outputs);  /* 8 inputs, 1 output */
void int2Long(const Pin* inputs, Pin* outputs);   /* 7 inputs, 1 output */
void Long2int(const Pin* inputs, Pin* outputs);   /* 6 inputs, 2 outputs */
void int2Double(const Pin* inputs, Pin* outputs); /* 9 inputs, 1 output */
void Double2int(const Pin* inputs, Pin* outputs); /* 6 inputs, 4 outputs */
void Float2int(const Pin* inputs, Pin* outputs);  /* 7 inputs, 2 outputs */
void byte2Long(const Pin* inputs, Pin* outputs);  /* 9 inputs, 1 output */
void byte2Float(const Pin* inputs, Pin* outputs); /* 10 inputs, 1 output */
void Float2byte(const Pin* inputs, Pin* outputs); /* 6 inputs, 4 outputs */
void int2byte(const Pin* inputs, Pin* outputs);   /* 6 inputs, 2 outputs */
void bcd2dec(const Pin* inputs, Pin* outputs);    /* 11 inputs, 1 output */

/* System information */
void ReadSysInfo(const Pin* inputs, Pin* outputs); /* 7 inputs, 4 outputs */

/* The decimal number of a BCD byte, x / 16 * 10 + x % 16: 0x25 gives 25. Any x is accepted. */
int32_t int2hex(int32_t x);

/*
 * Free memory, and free space of the storage card, in KiB, saturating at 2147483647. They run
 * `free` and `df` in a shell, take as long as those, and leave the output in
 * /mnt/ramdisk/ReadFreeRAM.txt and ReadFreeSD.txt. -1: no output, or 1024 bytes of it or more. -2:
 * the output has no "Mem:" line, or names neither /dev/mmcblk1p2 nor /dev/sda1. 0 also where the
 * line has fewer than three numbers.
 */
int32_t ReadFreeRAM(void);
int32_t ReadFreeSD(void);

/* Milliseconds since 1970-01-01 UTC, by gettimeofday, microseconds truncated. */
int64_t zelgetTime(void);
/* Seconds since 1970-01-01 UTC, in the width of the platform's time value (32 bits on the target).
 */
long zelgetTimeSec(void);

/* Data objects, all zero. No function uses them. */
extern unsigned char ub2f[4];
extern unsigned char i2b[2];
extern unsigned char ui2f[4];
extern unsigned char ub2l[4];
extern unsigned char ul2us[4];
extern unsigned char ui2l[4];
extern unsigned char ui2d[8];

#ifdef __cplusplus
}
#endif

#endif
