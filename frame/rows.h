// Field tables made of parts, for blocks that share some of their pins and keys.
#pragma once

#include <array>
#include <cstddef>

#include "frame/field.h"

namespace scanblocks {

// One table of several.
template <std::size_t... kSizes>
consteval auto join(const std::array<Field, kSizes>&... parts) {
  std::array<Field, (kSizes + ...)> rows{};
  std::size_t count = 0;
  const auto append = [&](const auto& part) {
    for (const Field& row : part) rows[count++] = row;
  };
  (append(parts), ...);
  return rows;
}

// The rows of a member that is a struct itself, as rows of the struct that holds it at `offset`.
template <std::size_t kSize>
consteval std::array<Field, kSize> within(std::size_t offset, std::array<Field, kSize> rows) {
  for (Field& row : rows) row.offset = static_cast<std::uint16_t>(row.offset + offset);
  return rows;
}

}  // namespace scanblocks
