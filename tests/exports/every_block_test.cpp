// The promises that all blocks share, over the whole catalogue.
#include <cstring>

#include "tests/support/rig.h"

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
  if (stateful())
    EXPECT_TRUE(rig.has_own_records());
  else
    EXPECT_TRUE(std::filesystem::is_empty(rig.directory()));
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

INSTANTIATE_TEST_SUITE_P(Catalogue, EveryBlock,
                         testing::ValuesIn(scanblocks::catalogue_of_blocks().begin(),
                                           scanblocks::catalogue_of_blocks().end()),
                         block_name);

}  // namespace
