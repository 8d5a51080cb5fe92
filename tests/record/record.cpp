// Calls every block with its pseudo-random sequences and digests what comes out of each call: the
// bits of the outputs, the bytes of the state file and the number of clock readings. The stored
// digests hold on every machine.
//
//   scanblocks_record               a digest per block
//   scanblocks_record --check FILE  compares them with stored ones
//   scanblocks_record --log BLOCK   every call of one block, to find a difference with diff
//   scanblocks_record --footprint   the stack of a call per block, and marks for count.c
#include <dlfcn.h>
#include <fcntl.h>
#include <sched.h>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string_view>

#include "tests/record/sequence.h"

using scanblocks::BlockInfo;

namespace {

std::string probe_file;

}  // namespace

// The probes' commands do nothing, and their output is a file of the sequence.
extern "C" __attribute__((visibility("default"))) int system(const char*) { return 0; }
extern "C" __attribute__((visibility("default"))) int open(const char* path, int flags, ...) {
  static const auto next = reinterpret_cast<decltype(&open)>(dlsym(RTLD_NEXT, "open"));
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return next(strncmp(path, "/mnt/ramdisk/", 13) == 0 ? probe_file.c_str() : path, flags, mode);
}

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

// Runs all sequences of a block; `call` makes a call, `done` sees each.
template <class Call, class Done>
void run(const BlockInfo& block, Call call, Done done) {
  for (int number = 0; number < Sequence::kSequences; ++number) {
    Rig rig(block.name);
    Sequence sequence(rig, number);
    probe_file = rig.directory() / "probe";
    for (int i = 0; i < Sequence::kCalls; ++i) {
      sequence.prepare();
      if (std::string_view(block.family) == "sysinfo")
        std::ofstream(probe_file) << sequence.probe_output();
      fake_clock.readings = 0;
      call(rig);
      done(rig);
      sequence.damage();
    }
  }
}

std::string digest_line(const BlockInfo& block, bool log) {
  Digest digest;
  run(
      block, [](Rig& rig) { rig.call(); },
      [&](const Rig& rig) {
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

// count.c counts the instructions from one sched_yield to the next and, at getppid, gives the
// sum, the number and the maximum of what it has counted.
void counted_call(Rig& rig) {
  sched_yield();
  rig.call();
  sched_yield();
}

// Enabled calls that go on from one another ten times a second, with numbers of a plant.
void usual_calls(const BlockInfo& block) {
  Random random(1);
  Rig rig(block.name);
  probe_file = rig.directory() / "probe";
  std::ofstream(probe_file) << "Mem: 255000 120000 135000\n/dev/sda1 7000000 100 6500000\n";
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

void footprint() {
  for (const BlockInfo* block : scanblocks::catalogue_of_blocks()) {
    PaintedStack stack;
    run(
        *block, [&](Rig& rig) { stack.call(rig); }, [](const Rig&) {});
    usual_calls(*block);
    getppid();
    run(*block, counted_call, [](const Rig&) {});
    getppid();
    std::printf("%s %zu\n", block->name, stack.used());
  }
}

}  // namespace

int main(int count, char** arguments) {
  setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
  const std::string_view option = count > 1 ? arguments[1] : "";
  if (option == "--check" && count == 3) return check(arguments[2]);
  if (option == "--log" && count == 3 && scanblocks::find_block(arguments[2]) != nullptr) {
    digest_line(*scanblocks::find_block(arguments[2]), true);
  } else if (option == "--footprint" && count == 2) {
    footprint();
  } else if (count == 1) {
    for (const BlockInfo* block : scanblocks::catalogue_of_blocks())
      std::puts(digest_line(*block, false).c_str());
  } else {
    std::fprintf(stderr, "usage: %s [--check FILE | --log BLOCK | --footprint]\n", arguments[0]);
    return 2;
  }
  return 0;
}
