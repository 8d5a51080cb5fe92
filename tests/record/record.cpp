// Calls every block with its pseudo-random sequences and digests what comes out of each call: the
// bits of the outputs, the bytes of the state file and the number of clock readings. The stored
// digests hold on every machine.
//
//   scanblocks_record               a digest per block
//   scanblocks_record --check FILE  compares them with stored ones
//   scanblocks_record --log BLOCK   every call of one block, to find a difference with diff
#include <stdlib.h>

#include <bit>
#include <cinttypes>
#include <cstdio>
#include <fstream>
#include <string_view>

#include "tests/support/sequence.h"

using scanblocks::BlockInfo;

namespace {

// FNV-1a.
class Digest {
 public:
  void add(const void* bytes, std::size_t size) {
    for (const auto* at = static_cast<const unsigned char*>(bytes); size-- > 0; ++at)
      value_ = (value_ ^ *at) * 0x100000001B3;
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325;
};

void log_call(const Rig& rig, const std::string& file) {
  std::printf("%s clock %" PRId64 "/%d in", rig.info().name, fake_clock.microseconds,
              fake_clock.readings);
  const auto print = [](const Pin* pins, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) std::printf(" %a", pins[i].Value);
  };
  print(rig.in_pins + SCANBLOCKS_FIRST_VALUE, rig.info().inputs.size());
  std::printf(" out");
  for (std::size_t i = 0; i < rig.info().outputs.size(); ++i)
    std::printf(" %016" PRIx64, std::bit_cast<std::uint64_t>(rig.out_pins[i].Value));
  for (const auto& [key, value] : rig.records()) std::printf(" %s=%s", key.c_str(), value.c_str());
  std::printf(" %zu bytes\n", file.size());
}

std::string digest_line(const BlockInfo& block, bool log) {
  Digest digest;
  run_sequences(block, [&](Rig& rig) {
    rig.call();
    const std::string file = rig.info().keys.empty() ? "" : rig.bytes();
    for (std::size_t i = 0; i < block.outputs.size(); ++i)
      digest.add(&rig.out_pins[i].Value, sizeof(double));
    digest.add(file.data(), file.size());
    digest.add(&fake_clock.readings, sizeof fake_clock.readings);
    if (log) log_call(rig, file);
  });
  char line[64];
  std::snprintf(line, sizeof line, "%-14s %016" PRIx64, block.name, digest.value());
  return line;
}

int check(const char* path) {
  std::ifstream stored(path);
  int different = 0;
  for (const BlockInfo* block : scanblocks::catalogue_of_blocks()) {
    const std::string now = digest_line(*block, false);
    std::string line;
    std::getline(stored, line);
    if (line == now) continue;
    ++different;
    std::printf("stored '%s', now '%s'\n", line.c_str(), now.c_str());
  }
  for (std::string line; std::getline(stored, line); ++different)
    std::printf("stored '%s', now no such block\n", line.c_str());
  return different == 0 ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
  setenv("TZ", Sequence::kTimeZone, 1);
  const std::string_view option = count > 1 ? arguments[1] : "";
  if (option == "--check" && count == 3) return check(arguments[2]);
  if (option == "--log" && count == 3 && scanblocks::find_block(arguments[2]) != nullptr) {
    digest_line(*scanblocks::find_block(arguments[2]), true);
  } else if (count == 1) {
    for (const BlockInfo* block : scanblocks::catalogue_of_blocks())
      std::puts(digest_line(*block, false).c_str());
  } else {
    std::fprintf(stderr, "usage: %s [--check FILE | --log BLOCK]\n", arguments[0]);
    return 2;
  }
  return 0;
}
