// The catalogue as text: blocks with their pins, units, state keys and states.
#pragma once

#include <span>
#include <string>

#include "frame/field.h"

namespace scanhost {

std::string block_list();                                        // one line for each block
std::string block_text(const scanblocks::BlockInfo& block);      // one line for each pin
std::string block_markdown(const scanblocks::BlockInfo& block);  // its page of the manual
// A JSON list of the blocks with pins, units, kinds and states.
std::string blocks_json(std::span<const scanblocks::BlockInfo* const> blocks);

}  // namespace scanhost
