// What each kind of damage to a state file leads to: which keys still count, whether the call is a
// first call, and that the file afterwards holds the block's records and nothing else.
#include <sys/stat.h>

#include "tests/support/rig.h"

namespace fs = std::filesystem;

namespace {

// An idle RunHours: it hands on what it reads. Absent keys are 0, a first call takes the presets.
const Records kStored = {
    {"ResetOld", "0"},           {"TmpTodayTotal", "11"}, {"TmpTime", "12"},
    {"OldInSignal", "0"},        {"TmpTotalHour", "13"},  {"TmpMaintenanceHour", "14"},
    {"TmpyesterdayTotal", "15"}, {"TmpMints", "16"},      {"OldDay", "17"}};
const std::size_t kSize = kStored.size() * 96;
const std::string kFirstCall = "0 5 0 0 8 7 6 0 14";
const std::string kNoKeys = "0 0 0 0 0 0 0 0 0";
const std::string kAll = "0 11 12 0 13 14 15 16 17";

const std::string kImage = image(kStored);

class StateFile : public testing::Test {
 protected:
  // The values that the call wrote, in order; all else is found wrong here.
  std::string after_call() {
    rig.call_at(kTraceStart);
    EXPECT_TRUE(rig.has_own_records());
    std::string values;
    for (const auto& [key, value] : rig.records()) values += (values.empty() ? "" : " ") + value;
    EXPECT_EQ(std::to_string(static_cast<int>(rig.out("TodayTotal"))), rig.state("TmpTodayTotal"));
    return values;
  }
  std::string after(const std::string& bytes) {
    rig.write_bytes(bytes);
    return after_call();
  }

  const TimeZone zone{"UTC"};
  Rig rig{
      "RunHours",
      {{"TodayPreset", 5}, {"YesterdayPreset", 6}, {"MaintenancePreset", 7}, {"TotalPreset", 8}}};
};

TEST_F(StateFile, Missing) {
  EXPECT_EQ(after_call(), kFirstCall);
  EXPECT_EQ(after(kImage), kAll);
  fs::remove(rig.file());
  EXPECT_EQ(after_call(), kFirstCall);
}

TEST_F(StateFile, Empty) { EXPECT_EQ(after(""), kNoKeys); }

TEST_F(StateFile, CutShort) {
  EXPECT_EQ(after(kImage.substr(0, 2 * 96)), "0 11 0 0 0 0 0 0 0");
  EXPECT_EQ(after(kImage.substr(0, kSize - 1)), "0 11 12 0 13 14 15 16 0");
  EXPECT_EQ(after(record("OldDay", "9").substr(0, 95)), kNoKeys);
}

TEST_F(StateFile, TrailingPiece) {
  for (const std::size_t size : {1u, 4u, 95u})
    EXPECT_EQ(after(kImage + record("OldDay", "9").substr(0, size)), kAll) << size;
  EXPECT_EQ(after(record("OldDay", "9") + "1234"), "0 0 0 0 0 0 0 0 9");
}

TEST_F(StateFile, UnknownRecords) {
  std::string bytes = record("", "1");
  for (const auto& [key, value] : kStored) {
    bytes += record(key, value);
    for (const std::string& other : {key + 'x', key.substr(1), ' ' + key, '_' + key.substr(1)})
      bytes += record(other, "99");
  }
  bytes += record("TMPMINTS", "99");
  EXPECT_EQ(after(bytes), kAll);
}

TEST_F(StateFile, DuplicateKeys) {
  EXPECT_EQ(after(record("OldDay", "9") + record("TmpMints", "x") + kImage), kAll);
  EXPECT_EQ(after(kImage + record("OldDay", "9") + record("TmpMints", "x")),
            "0 11 12 0 13 14 15 0 9");
}

TEST_F(StateFile, RecordsInAnotherOrder) {
  EXPECT_EQ(after(image({kStored.rbegin(), kStored.rend()})), kAll);
}

TEST_F(StateFile, KeysAndValuesWithoutNul) {
  std::string bytes = kImage;
  for (std::size_t i = 0; i < kStored.size(); ++i) {  // values fill their field to the end
    const std::string& value = kStored[i].second;
    bytes.replace(i * 96 + 32, 64, std::string(64 - value.size(), i % 2 == 0 ? '0' : ' ') + value);
  }
  EXPECT_EQ(after(bytes), kAll);
  const std::string full = record(std::string(32, 'O'), std::string(64, '9'));
  EXPECT_EQ(after(full + kImage + full), kAll);
  bytes = record("OldDay", std::string(64, '9'));
  EXPECT_EQ(after(record("OldDay" + std::string(26, '\1'), "3") + bytes),
            "0 0 0 0 0 0 0 0 2147483647");
}

TEST_F(StateFile, BytesBehindTheNul) {
  std::string bytes = kImage;
  for (char& byte : bytes)
    if (byte == '\0') byte = '7';
  for (std::size_t i = 0; i < kStored.size(); ++i)
    bytes[i * 96 + kStored[i].first.size()] = bytes[i * 96 + 32 + kStored[i].second.size()] = '\0';
  EXPECT_EQ(after(bytes), kAll);
}

TEST_F(StateFile, ValuesThatAreNoNumbers) {
  EXPECT_EQ(after(image({{"TmpTodayTotal", "letters"},
                         {"TmpTime", ""},
                         {"TmpTotalHour", " \t\n+12.9"},
                         {"TmpMaintenanceHour", "0x10"},
                         {"TmpyesterdayTotal", "1e3"},
                         {"TmpMints", "--1"},
                         {"OldDay", "9 8"}})),
            "0 0 0 0 12 0 1 0 9");
  EXPECT_EQ(after(std::string(kSize, '\xFF')), kNoKeys);
  EXPECT_EQ(after(std::string(kSize, '\0')), kNoKeys);
}

// The frame holds fourteen records and reads longer files in pieces of that many.
TEST_F(StateFile, LongerThanItsRecords) {
  for (const std::size_t records : {1u, 4u, 5u, 6u, 18u, 19u, 20u, 33u}) {
    std::string bytes = kImage;
    for (std::size_t i = 1; i < records; ++i) bytes += record("Other", "1");
    bytes += record("OldDay", "9");
    for (const std::string piece : {"", "OldDay"})
      EXPECT_EQ(after(bytes + piece), "0 11 12 0 13 14 15 16 9") << records;
  }
  std::string bytes = record("TmpTime", "1");
  while (bytes.size() < 100000) bytes += record("OldDay", std::to_string(bytes.size()));
  EXPECT_EQ(after(bytes + record("OldDay", "9") + std::string(50, 'x')), "0 0 1 0 0 0 0 0 9");
}

TEST_F(StateFile, DirectoryInItsPlace) {
  fs::create_directory(rig.file());
  for (int i = 0; i < 2; ++i) {
    rig.call_at(kTraceStart);
    EXPECT_EQ(rig.out("TodayTotal"), 0) << "it opens, without keys";
    EXPECT_TRUE(fs::is_directory(rig.file()) && fs::is_empty(rig.file()));
  }
  fs::remove(rig.file());
  EXPECT_EQ(after_call(), kFirstCall);
}

TEST_F(StateFile, MissingDirectory) {
  const fs::path directory = rig.directory() / "later";
  rig.set_text(SCANBLOCKS_STATE_DIR, directory.string());
  for (int i = 0; i < 2; ++i) {
    rig.call_at(kTraceStart);
    EXPECT_EQ(rig.out("TodayTotal"), 5);
    EXPECT_FALSE(fs::exists(directory));
  }
  fs::create_directory(directory);
  EXPECT_EQ(after_call(), kFirstCall);
  rig.set_text(SCANBLOCKS_STATE_DIR, rig.file().string());  // a file where a directory should be
  rig.call_at(kTraceStart);
  EXPECT_EQ(rig.out("TodayTotal"), 5);
}

TEST_F(StateFile, DanglingSymlink) {
  const fs::path target = rig.directory() / "target";
  fs::create_symlink(target, rig.file());
  EXPECT_EQ(after_call(), kFirstCall);
  EXPECT_TRUE(fs::is_symlink(rig.file()));
  EXPECT_EQ(fs::file_size(target), kSize);
  rig.set("TodayPreset", 99);
  EXPECT_EQ(after_call(), kFirstCall) << "by way of the link";
  fs::remove(rig.file());
  fs::create_symlink(rig.directory() / "no" / "target", rig.file());
  rig.call_at(kTraceStart);
  EXPECT_EQ(rig.out("TodayTotal"), 99);
  EXPECT_TRUE(fs::is_symlink(rig.file()) && !fs::exists(rig.directory() / "no"));
}

TEST_F(StateFile, OverwrittenInPlace) {
  rig.write_bytes(kImage + kImage);
  chmod(rig.file().c_str(), 0640);
  fs::create_hard_link(rig.file(), rig.directory() / "link");
  EXPECT_EQ(after_call(), kAll);
  EXPECT_EQ(fs::file_size(rig.directory() / "link"), kSize) << "the same file under both names";
  EXPECT_EQ(fs::status(rig.file()).permissions(), fs::perms(0640));
}

}  // namespace
