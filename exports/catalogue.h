// The catalogue: every block of the library with its pins, state keys and states, in the order of
// names.def. Built from the blocks' own field tables.
#pragma once

#include <span>
#include <string_view>

#include "frame/field.h"

namespace scanblocks {

std::span<const BlockInfo* const> catalogue_of_blocks();

// nullptr for a name that is no block.
const BlockInfo* find_block(std::string_view name);

}  // namespace scanblocks
