// scanhost blocks: the catalogue.
#include <cstdio>

#include "exports/catalogue.h"
#include "host/block_type.h"
#include "host/commands/commands.h"
#include "host/problems.h"
#include "host/reference.h"

namespace scanhost {

int blocks(const BlocksOptions& options) {
  if (!options.name.empty()) {
    const scanblocks::BlockInfo* block = scanblocks::find_block(options.name);
    if (block == nullptr)
      throw Rejection("scanhost: there is no block '" + options.name + "'; " +
                      suggest(options.name, catalogue_names(), "'scanhost blocks' lists them") +
                      "\n");
    std::fputs((options.markdown ? block_markdown(*block)
                : options.json   ? blocks_json({&block, 1})
                                 : block_text(*block))
                   .c_str(),
               stdout);
  } else if (options.json) {
    std::fputs(blocks_json(scanblocks::catalogue_of_blocks()).c_str(), stdout);
  } else if (!options.markdown) {
    std::fputs(block_list().c_str(), stdout);
  } else {
    const char* between = "";
    for (const scanblocks::BlockInfo* block : scanblocks::catalogue_of_blocks()) {
      std::fputs((between + block_markdown(*block)).c_str(), stdout);
      between = "\n";
    }
  }
  return 0;
}

}  // namespace scanhost
