/*
 * libplant.so: pieces of a plant to try control programs on, and the pattern for blocks of your
 * own.
 *
 * A block is a function with the signature of scanblocks_block. The program file declares it in
 * [types.NAME], with the names of its pins in the order of the enums below.
 *
 * These blocks remember nothing. What a piece of plant was on the previous scan comes in through a
 * wire from its own output: LevelOld = "Sump.Level". Before the first call such a wire carries 0,
 * so a plant begins empty, at rest and at the count 0. A block that is to start elsewhere has an
 * input for it and the output Started, which is 1 and comes back as StartedOld.
 *
 * Seconds is the time from call to call: the scan period. Anything else than a positive number
 * stands for "no time has passed".
 *
 * Only + - * / are used: the same inputs give the same outputs on every machine.
 */
#include <scanblocks/scanblocks.h>

#define BLOCK __attribute__((visibility("default"))) void

/* An input by its place among the value pins. */
static double value(const Pin* inputs, int place) {
  return inputs[SCANBLOCKS_FIRST_VALUE + place].Value;
}

static double limited(double x, double low, double high) {
  if (!(x > low)) return low; /* not-a-number too */
  return x < high ? x : high;
}

static double seconds(const Pin* inputs, int place) {
  return limited(value(inputs, place), 0, 1e9);
}

/* One step of a first-order lag with the time constant `lag`, stable for every step. The last
 * 1e-9 are none: numbers that fade out for ever become slow to compute with. */
static double follow(double old, double goal, double step, double lag) {
  const double rest = lag > 0 ? (old - goal) * lag / (step + lag) : 0;
  return rest > -1e-9 && rest < 1e-9 ? goal : goal + rest;
}

/*
 * Tank: a vessel with vertical walls.
 *
 *   Level      m, 0 to HeightM
 *   OverflowM3h  what did not fit in, m3/h
 *   Dry        1 while Level is below FloatM: a float switch
 *   Started    1
 *
 * The outflow of an empty tank is what flows in. AreaM2 0 and less counts as 1e-6.
 */
BLOCK Tank(const Pin* inputs, Pin* outputs);
BLOCK Tank(const Pin* inputs, Pin* outputs) {
  enum {
    kLevelOld,
    kStartedOld,
    kStartM,
    kInflowM3h,
    kOutflowM3h,
    kAreaM2,
    kHeightM,
    kFloatM,
    kSeconds
  };
  enum { kLevel, kOverflowM3h, kDry, kStarted };
  const double step = seconds(inputs, kSeconds);
  const double area = limited(value(inputs, kAreaM2), 1e-6, 1e9);
  const double old =
      value(inputs, kStartedOld) == 1.0 ? value(inputs, kLevelOld) : value(inputs, kStartM);
  const double net = value(inputs, kInflowM3h) - value(inputs, kOutflowM3h);
  const double wanted = old + net / 3600 * step / area;
  const double level = limited(wanted, 0, value(inputs, kHeightM));
  outputs[kLevel].Value = level;
  outputs[kOverflowM3h].Value =
      step > 0 && wanted > level ? (wanted - level) * area / step * 3600 : 0;
  outputs[kDry].Value = level < value(inputs, kFloatM);
  outputs[kStarted].Value = 1;
}

/*
 * Lag: first-order lag with dead time, for pipes, heaters and slow sensors.
 *
 *   Q          follows Gain * Input
 *   D1 .. D4   inside the dead time; come back as D1Old .. D4Old
 *
 * A true dead time would need one wired-back output for each scan of it. Here it is a chain of four
 * lags of DeadSec / 4: half of a step has arrived after 0.92 DeadSec and nine tenths after 1.67
 * DeadSec, to which LagSec adds. For a harder edge use several blocks in a row, each with a part of
 * DeadSec.
 */
BLOCK Lag(const Pin* inputs, Pin* outputs);
BLOCK Lag(const Pin* inputs, Pin* outputs) {
  enum { kQOld, kD1Old, kInput = kD1Old + 4, kGain, kLagSec, kDeadSec, kSeconds };
  enum { kQ, kD1, kCells = 4 };
  const double step = seconds(inputs, kSeconds);
  double passed = value(inputs, kGain) * value(inputs, kInput);
  for (int i = 0; i < kCells; ++i) {
    passed = follow(value(inputs, kD1Old + i), passed, step, value(inputs, kDeadSec) / kCells);
    outputs[kD1 + i].Value = passed;
  }
  outputs[kQ].Value = follow(value(inputs, kQOld), passed, step, value(inputs, kLagSec));
}

/*
 * Motor: with contactor, run-up and coasting.
 *
 *   Speed      0 to 1, rises to 1 within RunUpSec and falls to 0 within RunDownSec
 *   Running    the contact that tells: 1 from half speed on
 *
 * Command 1 runs it. Failure 1: the contactor does not pull in, it coasts; 2: the contactor sticks,
 * it runs without a command. Times of 0 and less are none.
 */
BLOCK Motor(const Pin* inputs, Pin* outputs);
BLOCK Motor(const Pin* inputs, Pin* outputs) {
  enum { kSpeedOld, kCommand, kFailure, kRunUpSec, kRunDownSec, kSeconds };
  enum { kSpeed, kRunning };
  const double step = seconds(inputs, kSeconds);
  const double failure = value(inputs, kFailure);
  const int powered = failure == 2.0 || (failure != 1.0 && value(inputs, kCommand) == 1.0);
  const double time = limited(value(inputs, powered ? kRunUpSec : kRunDownSec), 1e-9, 1e9);
  const double change = step / time;
  const double speed = value(inputs, kSpeedOld) + (powered ? change : -change);
  outputs[kSpeed].Value = limited(speed, 0, 1);
  outputs[kRunning].Value = outputs[kSpeed].Value >= 0.5;
}

/* A number from 0 to 4294967295 that looks random, the same for the same n. */
static uint32_t scatter(uint32_t n) {
  n = (n ^ (n >> 16)) * 0x21f0aaadu;
  n = (n ^ (n >> 15)) * 0x735a2d97u;
  return n ^ (n >> 15);
}

/*
 * Sensor: a 4 to 20 mA transmitter and its converter, with noise and spikes.
 *
 *   Raw        uA in whole numbers, 4000 at Low and 20000 at High, 3800 to 20500; 0 while Broken is
 * 1 Count      counts the calls, comes back as CountOld; 0 again after 999999
 *
 * Noise is the largest deviation in uA, evenly spread. Spikes is how many calls out of a million
 * have a spike, which adds a quarter to all of the range. Both follow from Count alone.
 */
BLOCK Sensor(const Pin* inputs, Pin* outputs);
BLOCK Sensor(const Pin* inputs, Pin* outputs) {
  enum { kCountOld, kInput, kLow, kHigh, kNoise, kSpikes, kBroken };
  enum { kRaw, kCount };
  const uint32_t count = (uint32_t)limited(value(inputs, kCountOld), 0, 999999);
  const uint32_t noise = scatter(2 * count);
  const uint32_t spike = scatter(2 * count + 1);
  const double span = value(inputs, kHigh) - value(inputs, kLow);
  double raw =
      4000 + (span != 0 ? (value(inputs, kInput) - value(inputs, kLow)) / span * 16000 : 0);
  raw += value(inputs, kNoise) * ((double)noise / 2147483648.0 - 1);
  if (spike % 1000000 < value(inputs, kSpikes)) raw += 4000 + noise % 12000;
  raw = limited(raw, 3800, 20500);
  outputs[kRaw].Value = value(inputs, kBroken) == 1.0 ? 0 : (double)(int32_t)(raw + 0.5);
  outputs[kCount].Value = count < 999999 ? count + 1 : 0;
}

/*
 * Remote: a control room whose link shows that it lives.
 *
 *   Heartbeat  counts up every EverySec while Link is 1, stands still otherwise
 *   Phase      s since it counted
 */
BLOCK Remote(const Pin* inputs, Pin* outputs);
BLOCK Remote(const Pin* inputs, Pin* outputs) {
  enum { kHeartbeatOld, kPhaseOld, kLink, kEverySec, kSeconds };
  enum { kHeartbeat, kPhase };
  const double phase = value(inputs, kPhaseOld) + seconds(inputs, kSeconds);
  const int counts = phase >= value(inputs, kEverySec);
  outputs[kPhase].Value = counts ? 0 : phase;
  outputs[kHeartbeat].Value = limited(value(inputs, kHeartbeatOld), 0, 1e9) +
                              (counts && value(inputs, kLink) == 1.0 ? 1 : 0);
}
