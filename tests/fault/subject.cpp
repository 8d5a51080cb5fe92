#include "tests/fault/subject.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

namespace {
constexpr double kUnset = -7.25e77;
}

Subject::Subject(const scanblocks::BlockInfo& block, unsigned seed)
    : rig(block.name),
      sequence(rig, static_cast<int>(Sequence::kCalm * seed)),
      reader_(block.name),
      random_(seed) {}

void Subject::put(Rig& to, const State& state) {
  std::filesystem::remove(to.file());
  if (state) to.write_bytes(*state);
}

void Subject::arrange(Shape shape) {
  put(rig, {});
  std::string images[2];
  for (std::string& image : images) {
    for (int calls = 3; calls > 0; --calls) {
      sequence.prepare();
      rig.call();
    }
    image = rig.bytes();
  }
  before = images[1];
  if (shape == Shape::kShort) before->resize(draw(before->size()));
  if (shape == Shape::kAbsent) before.reset();
  if (shape == Shape::kLong) *before += record("Unknown", "1").substr(0, 1 + draw(96));
  if (shape == Shape::kVeryLong) {
    for (auto more = draw(120); more > 0; --more) *before += record("Unknown", "1");
    for (std::size_t at = 0; at < images[0].size(); at += 96)
      if (draw(2) == 0) *before += images[0].substr(at, 96);
    *before += images[0].substr(0, draw(96));
  }
  sequence.prepare();
  clock_ = fake_clock.microseconds;
  reset();
  rig.call();
  after = state();
  outputs_.assign(reinterpret_cast<const char*>(rig.out_pins), sizeof rig.out_pins);
}

void Subject::reset() {
  put(rig, before);
  fake_clock.microseconds = clock_;
  for (Pin& pin : rig.out_pins) pin.Value = kUnset;
}

State Subject::state() const {
  if (!std::filesystem::exists(rig.file())) return {};
  return rig.bytes();
}

bool Subject::outputs_set() const {
  for (std::size_t i = 0; i < rig.info().outputs.size(); ++i)
    if (rig.out_pins[i].Value == kUnset) return false;
  return true;
}

bool Subject::outputs_right() const {
  return std::memcmp(outputs_.data(), rig.out_pins, sizeof rig.out_pins) == 0;
}

std::string Subject::next_call(const State& state) {
  std::string told;
  for (const bool idle : {true, false}) {
    for (std::size_t i = 0; i < Rig::kPins; ++i)
      reader_.in_pins[i].Value = idle ? 0 : rig.in_pins[i].Value;
    put(reader_, state);
    fake_clock.microseconds = clock_ + 1234567;
    reader_.call();
    told += reader_.bytes();
    told.append(reinterpret_cast<const char*>(reader_.out_pins), sizeof reader_.out_pins);
  }
  return told;
}

Verdict Subject::verdict() {
  const State now = state();
  if (now == after) return Verdict::kAfter;
  if (now == before) return Verdict::kBefore;
  if (!before) return now && now->empty() ? Verdict::kEmpty : Verdict::kLost;
  const std::string told = next_call(now);
  if (told == next_call(after)) return Verdict::kAfter;
  return told == next_call(before) ? Verdict::kBefore : Verdict::kLost;
}

int in_child(const std::function<int()>& work) {
  const pid_t child = fork();
  if (child == 0) _exit(work());
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 256 + WTERMSIG(status);
}

std::vector<const scanblocks::BlockInfo*> stateful_blocks() {
  std::vector<const scanblocks::BlockInfo*> blocks;
  for (const scanblocks::BlockInfo* block : scanblocks::catalogue_of_blocks())
    if (!block->keys.empty()) blocks.push_back(block);
  return blocks;
}
