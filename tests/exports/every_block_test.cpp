// The promises that all blocks share, over the whole catalogue.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/rig.h"

using scanblocks::Field;

namespace scanblocks {
// How a failure names its block.
static void PrintTo(const BlockInfo* block, std::ostream* stream) { *stream << block->name; }
}  // namespace scanblocks

namespace {

class EveryBlock : public testing::TestWithParam<const scanblocks::BlockInfo*> {
 protected:
  void SetUp() override {
    fake_clock = {};
    fake_clock.set(kTraceStart);
  }
  bool stateful() const { return !GetParam()->keys.empty(); }
};

TEST_P(EveryBlock, LeavesAllButTheOutputValuesUntouched) {
  Rig rig(GetParam()->name);
  for (Pin& pin : rig.out_pins) std::memset(&pin, 0xA5, sizeof pin);
  for (Pin& pin : rig.in_pins) pin.Header[0] = pin.Header[1] = 0x5A5A5A5A;
  rig.in_pins[5].Value = 1.0;
  Pin in_before[Rig::kPins];
  Pin out_before[Rig::kPins];
  std::memcpy(in_before, rig.in_pins, sizeof in_before);
  std::memcpy(out_before, rig.out_pins, sizeof out_before);
  rig.call();
  EXPECT_EQ(std::memcmp(in_before, rig.in_pins, sizeof in_before), 0);
  for (std::size_t i = 0; i < Rig::kPins; ++i) {
    const bool is_output = i < GetParam()->outputs.size();
    EXPECT_EQ(std::memcmp(&out_before[i].Value, &rig.out_pins[i].Value, 8) != 0, is_output) << i;
    out_before[i].Value = rig.out_pins[i].Value;
  }
  EXPECT_EQ(std::memcmp(out_before, rig.out_pins, sizeof out_before), 0);
}

TEST_P(EveryBlock, WritesItsKeysInOrderPaddedWithZeros) {
  Rig rig(GetParam()->name);
  rig.call();
  if (!stateful()) {
    EXPECT_TRUE(std::filesystem::is_empty(rig.directory()));
    return;
  }
  std::string image;
  const Records records = rig.records();
  ASSERT_EQ(records.size(), GetParam()->keys.size());
  for (std::size_t i = 0; i < records.size(); ++i) {
    EXPECT_EQ(records[i].first, GetParam()->keys[i].name);
    EXPECT_FALSE(records[i].second.empty());
    image += record(records[i].first, records[i].second);
  }
  EXPECT_EQ(rig.bytes(), image);
}

TEST_P(EveryBlock, ReadsBackWhatItReadsAndNothingElse) {
  if (!stateful()) return;
  // A disabled call keeps most of the memory; whatever a block makes of the file, foreign records,
  // doubles of a key and a trailing piece must not change it.
  Rig plain(GetParam()->name);
  Records stored;
  std::string noise = record("Unknown", "1");
  for (const Field& key : plain.info().keys) {
    noise += record(key.name, "99") + record(std::string(32, 'x'), std::string(64, '7'));
    const bool written_only = key.mark == scanblocks::Mark::kWriteOnly;
    stored.emplace_back(key.name, written_only ? "5" : "1");
  }
  plain.write_records(stored);
  std::string noisy = noise + plain.bytes() + std::string(95, '1');
  plain.call();

  Rig other(GetParam()->name);
  other.write_bytes(noisy);
  fake_clock.set(kTraceStart);
  other.call();
  EXPECT_EQ(other.bytes(), plain.bytes());
  for (std::size_t i = 0; i < GetParam()->outputs.size(); ++i)
    EXPECT_EQ(std::memcmp(&other.out_pins[i].Value, &plain.out_pins[i].Value, 8), 0) << i;
}

TEST_P(EveryBlock, KeepsInstancesApart) {
  if (!stateful()) return;
  Rig rig(GetParam()->name);
  rig.call();
  const std::string first = rig.bytes();
  const auto first_file = rig.file();
  for (const int pin : {SCANBLOCKS_INSTANCE_TAG, SCANBLOCKS_GROUP_TAG}) {
    rig.set_text(pin, std::string(63, 'n'));
    rig.call_at(kTraceStart + 5000);
    EXPECT_TRUE(std::filesystem::exists(rig.file())) << rig.file();
    EXPECT_NE(rig.file(), first_file);
  }
  rig.set_text(SCANBLOCKS_STATE_DIR, rig.directory().string() + "/");
  rig.set_text(SCANBLOCKS_INSTANCE_TAG, "I");
  rig.set_text(SCANBLOCKS_GROUP_TAG, "G");
  EXPECT_EQ(rig.bytes(), first);
}

TEST_P(EveryBlock, ComputesWithoutADirectory) {
  Rig rig(GetParam()->name);
  Rig nowhere(GetParam()->name);
  nowhere.set_text(SCANBLOCKS_STATE_DIR, "/nonexistent");
  rig.call();
  fake_clock.set(kTraceStart);
  nowhere.call();
  EXPECT_EQ(std::memcmp(rig.out_pins, nowhere.out_pins, sizeof rig.out_pins), 0);
}

std::string name_of(const testing::TestParamInfo<const scanblocks::BlockInfo*>& info) {
  return info.param->name;
}
INSTANTIATE_TEST_SUITE_P(Catalogue, EveryBlock,
                         testing::ValuesIn(scanblocks::catalogue_of_blocks().begin(),
                                           scanblocks::catalogue_of_blocks().end()),
                         name_of);

}  // namespace
