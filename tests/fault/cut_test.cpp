// A process that is killed in a call, at the entry or the exit of any of its system calls or at any
// moment, leaves the state of before or after the call, whole. Only a file that does not exist yet
// may also be left empty, and then reads as one without keys.
//
// SCANBLOCKS_CUTS is the number of cuts at system calls per block; scripts/fault sets it. There are
// a quarter as many at other moments.
#include <signal.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>

#include "tests/fault/subject.h"

namespace {

class Cut : public StatefulBlock {
 protected:
  void count(Verdict verdict) { ++counts_[static_cast<int>(verdict)]; }
  int cuts() const { return counts_[0] + counts_[1] + counts_[2] + counts_[3]; }
  int counts(Verdict verdict) const { return counts_[static_cast<int>(verdict)]; }
  int wanted() const {
    const char* number = std::getenv("SCANBLOCKS_CUTS");
    return number != nullptr ? std::atoi(number) : 80;
  }
  void TearDown() override {
    if (IsSkipped()) return;
    std::printf("cuts %d before %d after %d empty %d lost %d\n", cuts(), counts_[0], counts_[1],
                counts_[2], counts_[3]);
    EXPECT_EQ(counts_[3], 0);
    EXPECT_GT(cuts(), 0);
  }

 private:
  int counts_[4] = {};
};

#ifdef __x86_64__
// Runs the call in a child between two getppid, and kills it at the n-th stop between them, counted
// from 1. False where there are fewer.
bool cut_at_stop(Subject& subject, int n) {
  const pid_t child = fork();
  if (child == 0) {
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    raise(SIGSTOP);
    getppid();
    subject.call();
    getppid();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
  int stops = 0;
  for (int markers = 0; markers < 3 && stops < n;) {
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    if (waitpid(child, &status, 0) != child || !WIFSTOPPED(status)) break;
    __ptrace_syscall_info info{};
    ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
    if (markers == 1 && info.op == PTRACE_SYSCALL_INFO_EXIT)
      markers = 2;  // the exit of the first marker
    else if (info.op == PTRACE_SYSCALL_INFO_ENTRY && info.entry.nr == SYS_getppid)
      ++markers;
    else if (markers == 2)
      ++stops;
  }
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
  return stops == n;
}

TEST_P(Cut, AtEverySystemCall) {
  for (unsigned round = 0; cuts() < wanted() || round < std::size(kShapes); ++round) {
    Subject subject(*GetParam(), round);
    const Shape shape = kShapes[round % std::size(kShapes)];
    subject.arrange(shape);
    for (int n = 1;; ++n) {
      subject.reset();
      if (!cut_at_stop(subject, n)) {
        ASSERT_GE(n, 9);  // open, read or open, write, close
        break;
      }
      const Verdict verdict = subject.verdict();
      count(verdict);
      ASSERT_NE(verdict, Verdict::kLost) << "round " << round << ", stop " << n;
      if (shape == Shape::kUsual) {
        ASSERT_TRUE(subject.state() == subject.before || subject.state() == subject.after);
      }
    }
  }
  EXPECT_GT(counts(Verdict::kBefore), 0);
  EXPECT_GT(counts(Verdict::kAfter), 0);
}
#else
TEST_P(Cut, AtEverySystemCall) { GTEST_SKIP() << "needs ptrace of x86-64"; }
#endif

// The child tells how many calls it has ended; the same calls, made again here, tell what its file
// must hold.
TEST_P(Cut, AtAnyMoment) {
  auto* ended =
      static_cast<std::atomic<int>*>(mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                                          MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  ASSERT_NE(ended, MAP_FAILED);
  for (unsigned round = 0; cuts() < wanted() / 4; ++round) {
    Subject subject(*GetParam(), round);
    subject.arrange(Shape::kUsual);
    subject.reset();
    auto next = [&, sequence = subject.sequence]() mutable {
      sequence.prepare();
      subject.call();
    };
    *ended = 0;
    const pid_t child = fork();
    if (child == 0)
      for (;; ++*ended) next();
    const timespec pause{0, static_cast<long>(round * 7919 % 100000)};
    while (*ended == 0) nanosleep(&pause, nullptr);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const State left = subject.state();
    subject.reset();
    for (int calls = *ended; calls > 0; --calls) next();
    const State before = subject.state();
    next();
    count(left == subject.state() ? Verdict::kAfter
          : left == before        ? Verdict::kBefore
                                  : Verdict::kLost);
  }
  munmap(ended, sizeof *ended);
}

FOR_STATEFUL_BLOCKS(Cut);

}  // namespace
