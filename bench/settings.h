// The inputs that the benchmarks give to blocks: a plant at work, with a signal that moves.
#pragma once

#include <span>

#include "frame/field.h"

// Fills the value pins for an even or an odd call.
void set_inputs(const scanblocks::BlockInfo& block, bool odd, std::span<Pin> pins);
