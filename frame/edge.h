// Edges of digital inputs. Only the integers 0 and 1 are levels, and only a step from one to the
// other is an edge: from 2 to 1, say, nothing rises.
#pragma once

#include <cstdint>

namespace scanblocks {

constexpr bool rising(std::int32_t before, std::int32_t now) { return before == 0 && now == 1; }
constexpr bool falling(std::int32_t before, std::int32_t now) { return before == 1 && now == 0; }

}  // namespace scanblocks
