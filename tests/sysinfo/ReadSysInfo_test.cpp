// ReadSysInfo and its probes, with the tests' own `free` and `df` in front of the platform's. They
// need the fixed directory /mnt/ramdisk: made for the tests and removed, or the tests are skipped.
// A lock keeps tests of the probes that run at the same time from mixing their files.
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "tests/support/rig.h"

namespace {

namespace fs = std::filesystem;

const fs::path kDisk = "/mnt/ramdisk";

class Probes : public testing::Test {
 protected:
  void SetUp() override {
    const fs::path lock = fs::temp_directory_path() / "scanblocks-ramdisk.lock";
    lock_ = open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    ASSERT_EQ(flock(lock_, LOCK_EX), 0) << lock;
    std::error_code failed;
    made_ = fs::create_directory(kDisk, failed);
    if (std::ofstream(kDisk / "scanblocks-test").fail())
      GTEST_SKIP() << kDisk << " is missing or not writable: run as root, or make it";
    fs::remove(kDisk / "scanblocks-test");
    setenv("PATH", (commands_.path().string() + ":" + path_).c_str(), 1);
  }
  void TearDown() override {
    setenv("PATH", path_.c_str(), 1);
    for (const char* file : {"ReadFreeRAM.txt", "ReadFreeSD.txt"}) fs::remove(kDisk / file);
    if (made_) fs::remove(kDisk);
    close(lock_);
  }

  // The command prints `output` and leaves a line in the file "calls".
  void command(const std::string& name, const std::string& output) const {
    const fs::path file = commands_.path() / name;
    std::ofstream(commands_.path() / (name + ".txt")) << output;
    std::ofstream(file) << "#!/bin/sh\necho " << name << " >> " << commands_.path() / "calls"
                        << "\ncat " << commands_.path() / (name + ".txt") << "\n";
    fs::permissions(file, fs::perms::owner_all);
  }
  std::string calls() const {
    std::ifstream stream(commands_.path() / "calls");
    std::string all;
    for (std::string line; std::getline(stream, line);) all += line + " ";
    return all;
  }
  std::int32_t ram(const std::string& output) const {
    command("free", output);
    return free_ram();
  }
  std::int32_t sd(const std::string& output) const {
    command("df", output);
    return free_sd();
  }

  bool made_ = false;
  std::int32_t (*const free_ram)() = reinterpret_cast<std::int32_t (*)()>(exported("ReadFreeRAM"));
  std::int32_t (*const free_sd)() = reinterpret_cast<std::int32_t (*)()>(exported("ReadFreeSD"));

 private:
  const std::string path_ = getenv("PATH");
  TemporaryDirectory commands_;
  int lock_ = -1;
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

TEST_F(Probes, LeaveNoChildAndNoOpenFile) {
  const auto open_files = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  const auto before = open_files();
  for (const auto handler : {SIG_IGN, SIG_DFL}) {  // ignored, system() itself reports a failure
    signal(SIGCHLD, handler);
    EXPECT_EQ(ram("Mem: 1 2 3"), 3);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
  }
  EXPECT_EQ(open_files(), before);
}

TEST_F(Probes, FailWithoutTheirDirectory) {
  if (!made_) GTEST_SKIP() << kDisk << " is not the tests' own";
  command("free", "Mem: 1 2 3");
  fs::remove(kDisk);
  EXPECT_EQ(free_ram(), -1);
  fs::create_directory(kDisk);
}

TEST_F(Probes, AreRunBySysInfoAtItsInterval) {
  command("free", "Mem: 1 2 135000");
  command("df", "/dev/sda1 5 6 7000 8%");
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
  EXPECT_EQ(calls(), "df free ");

  command("df", "nothing");
  command("free", "Mem: 1 2 99");
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
