#include "exports/catalogue.h"

#define FUNCTION_NAME(name)
#define DATA_NAME(name)

namespace scanblocks {
namespace catalogue {
#define BLOCK_NAME(name) extern const BlockInfo name;
#include "exports/names.def"
#undef BLOCK_NAME
}  // namespace catalogue

namespace {
constexpr const BlockInfo* kBlocks[] = {
#define BLOCK_NAME(name) &catalogue::name,
#include "exports/names.def"
#undef BLOCK_NAME
};
}  // namespace

std::span<const BlockInfo* const> catalogue_of_blocks() { return kBlocks; }

const BlockInfo* find_block(std::string_view name) {
  for (const BlockInfo* block : kBlocks)
    if (name == block->name) return block;
  return nullptr;
}

}  // namespace scanblocks
