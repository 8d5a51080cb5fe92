// What a call of each block costs: prints its deepest stack, and makes marked calls whose
// instructions count.c counts.
#include <dlfcn.h>
#include <fcntl.h>
#include <sched.h>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>

#include "tests/support/sequence.h"

using scanblocks::BlockInfo;

// The probes' commands do nothing, and their RAM disk is the working directory. Nothing else comes
// between the library and the C library, as it would be measured too.
extern "C" __attribute__((visibility("default"))) int system(const char*) { return 0; }
extern "C" __attribute__((visibility("default"))) int open(const char* path, int flags, ...) {
  static const auto next = reinterpret_cast<decltype(&open)>(dlsym(RTLD_NEXT, "open"));
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return next(strncmp(path, "/mnt/ramdisk/", 13) == 0 ? path + 13 : path, flags, mode);
}

namespace {

// A stack of its own for the calls, filled with a pattern that shows how deep they went.
class PaintedStack {
 public:
  PaintedStack() { std::fill_n(bytes_.get(), kSize, kPaint); }

  void call(Rig& rig) {
    rig_ = &rig;
    getcontext(&there_);
    there_.uc_stack.ss_sp = bytes_.get();
    there_.uc_stack.ss_size = kSize;
    there_.uc_link = &here_;
    current_ = this;
    makecontext(&there_, &PaintedStack::enter, 0);
    swapcontext(&here_, &there_);
  }
  std::size_t used() const {
    const auto* deepest = std::find_if(bytes_.get(), bytes_.get() + kSize,
                                       [](unsigned char byte) { return byte != kPaint; });
    return static_cast<std::size_t>(top_ - deepest);
  }

 private:
  static constexpr std::size_t kSize = 256 * 1024;
  static constexpr unsigned char kPaint = 0xA7;

  static void enter() {
    current_->top_ = static_cast<const unsigned char*>(__builtin_frame_address(0));
    current_->rig_->call();
  }

  static inline PaintedStack* current_ = nullptr;
  std::unique_ptr<unsigned char[]> bytes_{new unsigned char[kSize]};
  const unsigned char* top_ = nullptr;
  Rig* rig_ = nullptr;
  ucontext_t here_{};
  ucontext_t there_{};
};

// count.c counts the instructions from one sched_yield to the next and, at getppid, gives their
// number, their sum and the longest.
void counted_call(Rig& rig) {
  sched_yield();
  rig.call();
  sched_yield();
}

// Enabled calls that go on from one another ten times a second, with numbers of a plant.
void usual_calls(const BlockInfo& block) {
  Random random(1);
  Rig rig(block.name);
  write_probes(rig, "Mem: 255000 120000 135000\n/dev/sda1 7000000 100 6500000\n");
  fake_clock = {};
  fake_clock.set(kTraceStart);
  for (int i = 0; i < 24; ++i) {
    for (std::size_t pin = 1; pin < block.inputs.size(); ++pin)
      if (i == 0 || random.one_in(4)) {
        const scanblocks::Field& input = block.inputs[pin];
        rig.in_pins[SCANBLOCKS_FIRST_VALUE + pin].Value = input.kind == scanblocks::Kind::kNumber
                                                              ? random.below(100000) / 1000.0
                                                          : *input.unit != '\0' ? 1000
                                                                                : random.below(2);
      }
    rig.in_pins[SCANBLOCKS_FIRST_VALUE].Value = 1;
    fake_clock.microseconds += 100000;
    i < 4 ? rig.call() : counted_call(rig);
  }
}

}  // namespace

int main() {
  setenv("TZ", Sequence::kTimeZone, 1);
  for (const BlockInfo* block : scanblocks::catalogue_of_blocks()) {
    PaintedStack stack;
    run_sequences(*block, [&](Rig& rig) { stack.call(rig); });
    usual_calls(*block);
    getppid();
    run_sequences(*block, counted_call);
    getppid();
    std::printf("%s %zu\n", block->name, stack.used());
  }
}
