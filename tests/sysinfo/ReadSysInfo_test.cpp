// ReadSysInfo and its probes, with the tests' own `free` and `df`.
#include <fstream>
#include <map>

#include "tests/support/interpose.h"
#include "tests/support/rig.h"

namespace {

namespace fs = std::filesystem;

class Probes : public testing::Test {
 protected:
  Probes() {
    fs::current_path(disk_.path());
    shell = [this](const std::string& command) { return run(command); };
  }
  ~Probes() override {
    shell = nullptr;
    fs::current_path("/");
  }

  std::int32_t ram(const std::string& output) { return call("ReadFreeRAM", "free", output); }
  std::int32_t sd(const std::string& output) { return call("ReadFreeSD", "df", output); }

  std::map<std::string, std::string> outputs;  // of the commands
  std::string calls;

 private:
  // As a shell does it, with the result of system() where SIGCHLD is ignored.
  int run(const std::string& command) {
    for (const auto& [name, file] :
         {std::pair("free", "ReadFreeRAM.txt"), {"df", "ReadFreeSD.txt"}}) {
      if (command == std::string("rm /mnt/ramdisk/") + file) fs::remove(file);
      if (command != std::string(name) + " >> /mnt/ramdisk/" + file) continue;
      calls += std::string(name) + " ";
      std::ofstream(file, std::ios::app) << outputs[name];
    }
    return -1;
  }
  std::int32_t call(const char* probe, const char* command, const std::string& output) {
    outputs[command] = output;
    return reinterpret_cast<std::int32_t (*)()>(exported(probe))();
  }

  TemporaryDirectory disk_;
};

TEST_F(Probes, ReadTheThirdNumberOfTheLine) {
  const std::pair<std::string, std::int32_t> memory[] = {
      {"      total used free\nMem:  255000 120000 135000 0 8000\nSwap: 1 2 3\n", 135000},
      {"Mem:1-2+3abc Mem: 4 5 6", 3},
      {"Mem:\n\t1\v2\n-3", -3},
      {"Mem: 1 2 + 3", 0},
      {"Mem: 1.5 2 3", 0},
      {"Mem: 99999999999999999999 2 -99999999999999999999", INT32_MIN},
      {"mem: 1 2 3\n", -2},
      {"", -1},
      {"Mem: 1 2 2147483648" + std::string(1004, '.'), INT32_MAX},
      {"Mem: 1 2 2147483648" + std::string(1005, '.'), -1},  // 1024 bytes: may be cut
      {"Mem: 1 2 2147483648" + std::string(5000, '.'), -1}};
  for (const auto& [output, result] : memory) EXPECT_EQ(ram(output), result) << output;
  const std::pair<std::string, std::int32_t> storage[] = {
      {"/dev/sda1 10 20 30 40% /\n/dev/mmcblk1p2 70 10 60 2% /data\n", 60},
      {"/dev/mmcblk1p2 - - -\n/dev/sda1 5 6 7 8% /", 0},
      {"/dev/mmcblk1p1 1 2 3 4% /\n/dev/sda1 5 6 7 8% /", 7},
      {"/dev/mmcblk1p1 1 2 3 4% /\n/dev/sdb1 5 6 7 8% /", -2},
      {"tmpfs 1 2 3 4% /dev/mmcblk1p2 5 6 7", 7},  // a name in any column
      {"/dev/sda12 6 7 8% /", 7}};                 // the name, then 2, 6 and 7
  for (const auto& [output, result] : storage) EXPECT_EQ(sd(output), result) << output;
}

TEST_F(Probes, FailWithoutTheirDirectoryAndLeaveNoFileOpen) {
  const auto open_files = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  const auto before = open_files();
  EXPECT_EQ(sd("/dev/sda1 1 2 3"), 3);
  EXPECT_EQ(ram("Mem: 1 2 4"), 4);
  fs::current_path("/proc");
  EXPECT_EQ(ram("Mem: 1 2 4"), -1);
  EXPECT_EQ(open_files(), before);
}

TEST_F(Probes, AreRunBySysInfoAtItsInterval) {
  outputs = {{"free", "Mem: 1 2 135000"}, {"df", "/dev/sda1 5 6 7000 8%"}};
  Rig rig("ReadSysInfo", {{"Enable", 1}, {"SampleInterval", 60000}});
  trace(rig, R"(
    t       Enable | FreeRam FreeSD CPUUsage #clock | FreeRam       FreeSD      TmpTime
    0          1   | 0       0      0          2    | 0.000000      0.000000    3487918080
    60         1   | 0       0      0          2    | 0.000000      0.000000    3487918080
    60.001     0   | 0       0      0          1    | 0.000000      0.000000    3487918080
    60.001     2   | 0       0      0          1    | 0.000000      0.000000    3487918080
    60.001     1   | 135000  7000   0          3    | 135000.000000 7000.000000 3487978081
    61         1   | 135000  7000   0          2    | -             -           3487978081
  )");
  EXPECT_EQ(calls, "df free ");

  outputs = {{"free", "Mem: 1 2 99"}, {"df", "nothing"}};
  trace(rig, R"(
    t      SampleInterval Enable | FreeRam FreeSD #clock | FreeSD   TmpTime
    61            0          1   | 99      0        3    | 0.000000 3487979080     failed: 0
    61            0          1   | 99      0        2    | 0.000000 3487979080     no time passed
    61           -1          1   | 99      0        3    | -        3487979080
    60.5        500          1   | 99      0        2    | -        3487979080
    60.499      500          1   | 99      0        3    | -        3487978579     set back by 501 ms
    70            0          0   | 99      0        1    | -        3487978579
  )");
}

TEST(ReadSysInfo, PassesOnTheFiguresOfOthers) {
  trace("ReadSysInfo", {}, R"(
    t  CPUUsage= FreeFlash= TmpTime=   Enable SampleInterval | CPUUsage FreeFlash FreeRam | CPUUsage  FreeFlash   TmpTime
    0    12.5       4096    4294967297   0         1000      | 12.5     4096      0       | 12.500000 4096.000000 1
    0    -          -       -            1         1e99      | 12.5     4096      0       | 12.500000 4096.000000 1
  )");
}

}  // namespace
