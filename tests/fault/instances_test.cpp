// Different instances do not meet: what processes or threads make of theirs, at full speed and in
// one directory, is what one alone makes of it.
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "tests/fault/subject.h"

namespace {

// Calls instance `number` of every block; returns what all outputs and the files were.
std::string run(const std::filesystem::path& directory, unsigned number) {
  std::string told;
  const auto blocks = scanblocks::catalogue_of_blocks();
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    // Not all at the same block at the same time.
    Rig rig(blocks[(i + number) % blocks.size()]->name);
    rig.set_text(SCANBLOCKS_STATE_DIR, directory.string());
    rig.set_text(SCANBLOCKS_INSTANCE_TAG, std::to_string(number));
    Sequence sequence(rig, static_cast<int>(number));
    for (int calls = 0; calls < 100; ++calls) {
      sequence.prepare();
      rig.call();
      told.append(reinterpret_cast<const char*>(rig.out_pins), sizeof rig.out_pins);
    }
    told += rig.bytes();
  }
  return told;
}

class Instances : public testing::Test {
 protected:
  // Without TZ the C library allocates in each tzset, under a lock that the thread sanitizer does
  // not see.
  Instances() : zone_("CET-1CEST,M3.5.0,M10.5.0/3") {
    for (unsigned number = 0; number < 4; ++number) alone_[number] = run(apart_.path(), number);
  }
  bool same(unsigned number) { return run(shared_.path(), number) == alone_[number]; }

 private:
  TimeZone zone_;
  TemporaryDirectory apart_, shared_;
  std::string alone_[4];
};

TEST_F(Instances, InFourThreads) {
  bool right[4] = {};
  std::vector<std::thread> threads;
  for (unsigned number = 0; number < 4; ++number)
    threads.emplace_back([&, number] { right[number] = same(number); });
  for (std::thread& thread : threads) thread.join();
  for (const bool one : right) EXPECT_TRUE(one);
}

TEST_F(Instances, InTwoProcesses) {
  const pid_t other = fork();
  if (other == 0) _exit(same(1) ? 0 : 1);
  EXPECT_TRUE(same(0));
  int status = 1;
  waitpid(other, &status, 0);
  EXPECT_EQ(status, 0);
}

}  // namespace
