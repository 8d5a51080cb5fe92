#include "tests/support/sequence.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string_view>

namespace {

constexpr std::int64_t kSecond = 1000000;
constexpr std::int64_t kLastSecond = 2147483600;  // of a 32-bit clock, nearly

enum Style : std::uint32_t { kSwitch, kOn, kSmall, kDecimal, kLarge, kAnything };

// As bits: a decimal constant may not stand for a NaN.
constexpr std::uint64_t kSpecial[] = {
    0x7FF8000000000000, 0xFFF8000000000000,  // quiet NaNs
    0x7FF0000000000001, 0xFFF4000123456789,  // signalling NaNs
    0xFFFFFFFFFFFFFFFF, 0x7FF800000000BEEF,  // NaNs with a payload
    0x7FF0000000000000, 0xFFF0000000000000,  // infinite
    0x0000000000000001, 0x800FFFFFFFFFFFFF,  // subnormal
    0x8000000000000000, 0x7FEFFFFFFFFFFFFF,  // -0, the largest
    0x41DFFFFFFFC00000, 0x41E0000000000000,  // 2^31 - 1, 2^31
    0xC1E0000000000000, 0xC1E0000000200000,  // -2^31, -2^31 - 1
    0x41F0000000000000, 0x43E0000000000000,  // 2^32, 2^63
    0x47EFFFFFE0000000, 0x47EFFFFFF0000000,  // the largest single, the next above
    0x36A0000000000000, 0x380FFFFFC0000000,  // single subnormals
    0x3FEFFFFFFFFFFFFF, 0x3FFFFFFFFFFFFFFF,  // below 1, below 2
    0x3FF8000000000000, 0x4000000000000000,  // 1.5, 2
    0x3EA421F5F40D8376, 0x4B6A784379D99DB4,  // 0.0000006, 1e56
};

constexpr const char* kTexts[] = {
    "nan",
    "-nan",
    "nan(123)",
    "-inf",
    "INFINITY",  // not finite
    "1e400",
    "-1e-400",
    "0x1.8p3",  // beyond the widest, below the finest, hexadecimal
    "  12 kW",
    "kW",
    "",
    "-0.0",
    "+7",  // half a number, none, signs
    "99999999999999999999",
    "-99999999999999999999",  // beyond 64 bits
    "4294967297",
    "2147483648",  // and beyond 32
    "1.9",
    "0.0000005",
    "123456789012345678901234567890.5",
    "4.9e-324",  // decimals
    "1",
    "0",
    "2",
    "5",
    "10",
    "15",
    "100",                                                                   // states
    "179769313486231570814527423731704356798070567525844996598917476803.0",  // fills its field
};

std::uint64_t seed_of(const std::string& name, int number) {
  std::uint64_t seed = static_cast<std::uint64_t>(number);
  for (const char c : name) seed = seed * 31 + static_cast<unsigned char>(c);
  return seed;
}

}  // namespace

std::uint64_t Random::bits() {
  std::uint64_t mixed = state_ += 0x9E3779B97F4A7C15;
  mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
  mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
  return mixed ^ (mixed >> 31);
}

Sequence::Sequence(Rig& rig, int number)
    : rig_(rig),
      random_(seed_of(rig.info().name, number)),
      wild_(number % 2 == 1),
      damaging_(number % 4 >= 2) {
  constexpr std::int64_t kPaces[] = {1000, 100000, 999999, kSecond, 7 * kSecond, 1800 * kSecond};
  pace_ = kPaces[random_.below(std::size(kPaces))];
  fake_clock = {};
  fake_clock.set(1200000000 + random_.below(900000000));
  fake_clock.step = random_.one_in(2) ? 0 : 777;
  for (std::size_t i = 0; i < rig.info().inputs.size(); ++i) {
    using scanblocks::Kind;
    const Kind kind = rig.info().inputs[i].kind;
    const bool flag = kind == Kind::kFlag || kind == Kind::kExactFlag;
    if (i == 0 || flag)
      styles_[i] = random_.one_in(3) ? kSwitch : kOn;
    else
      styles_[i] = random_.below(wild_ ? 6 : kind == Kind::kNumber ? 4 : 3);
    rig.in_pins[SCANBLOCKS_FIRST_VALUE + i].Value = value(i);
  }
}

double Sequence::value(std::size_t input) {
  const bool special = wild_ && random_.one_in(6);
  if (special) return std::bit_cast<double>(kSpecial[random_.below(std::size(kSpecial))]);
  switch (styles_[input]) {
    case kSwitch:
      return random_.below(2);
    case kOn:
      return random_.one_in(8) ? 0 : 1;
    case kSmall:
      return static_cast<double>(random_.below(16)) - 3;
    case kDecimal:
      return (static_cast<double>(random_.below(200000)) - 100000) / 1000;
    case kLarge:
      return static_cast<double>(static_cast<std::int64_t>(random_.bits()) >> random_.below(63));
    default:
      return std::bit_cast<double>(random_.bits());
  }
}

void Sequence::prepare() {
  for (std::size_t i = 0; i < rig_.info().inputs.size(); ++i)
    if (random_.one_in(3)) rig_.in_pins[SCANBLOCKS_FIRST_VALUE + i].Value = value(i);

  constexpr std::int64_t kWrap = 4294967296 * 1000;
  constexpr std::int64_t kSteps[] = {
      0,         -1,         -kSecond, -3600 * kSecond, 60 * kSecond, 86400 * kSecond,
      kWrap / 2, -kWrap / 2, kWrap};
  fake_clock.microseconds += random_.one_in(6) ? kSteps[random_.below(std::size(kSteps))] : pace_;
  fake_clock.microseconds =
      std::clamp<std::int64_t>(fake_clock.microseconds, 0, kLastSecond * kSecond);
}

void Sequence::damage() {
  const auto& keys = rig_.info().keys;
  if (!damaging_ || keys.empty() || !random_.one_in(3)) return;
  std::string bytes = rig_.bytes();
  const auto piece = [&] {
    const char* key = keys[random_.below(static_cast<std::uint32_t>(keys.size()))].name;
    return record(key, kTexts[random_.below(std::size(kTexts))]);
  };
  switch (random_.below(6)) {
    case 0:
      bytes.resize(random_.below(static_cast<std::uint32_t>(bytes.size()) + 1));
      break;
    case 1:
      if (!bytes.empty())
        bytes[random_.below(static_cast<std::uint32_t>(bytes.size()))] =
            static_cast<char>(random_.below(256));
      break;
    case 2:
      bytes.insert(0, piece());
      bytes.append(random_.below(200), 'x');
      break;
    case 3:
      std::remove(rig_.file().c_str());
      return;
    default:
      for (int i = 0; i < 3; ++i) bytes += piece();
  }
  rig_.write_bytes(bytes);
}

std::string Sequence::probe_output() {
  const std::uint32_t total = random_.below(5000000);
  const std::uint32_t free = random_.one_in(2) ? ~0u : random_.below(100000);
  const char* memory = random_.one_in(4) ? "Swap:" : "Mem:";
  const char* disk = random_.one_in(2) ? "/dev/mmcblk1p2" : "/dev/sda1";
  char text[128];
  std::snprintf(text, sizeof text, "%s %u 2\t%u 4\n%s %u 2 %u", memory, total, free, disk, free,
                total);
  return text;
}

void write_probes(const Rig& rig, const std::string& output) {
  std::filesystem::current_path(rig.directory());
  for (const char* file : {"ReadFreeRAM.txt", "ReadFreeSD.txt"}) std::ofstream(file) << output;
}

void run_sequences(const scanblocks::BlockInfo& block, const std::function<void(Rig&)>& call) {
  const bool sysinfo = std::string_view(block.family) == "sysinfo";
  for (int number = 0; number < Sequence::kSequences; ++number) {
    Rig rig(block.name);
    Sequence sequence(rig, number);
    for (int i = 0; i < Sequence::kCalls; ++i) {
      sequence.prepare();
      if (sysinfo) write_probes(rig, sequence.probe_output());
      fake_clock.readings = 0;
      call(rig);
      sequence.damage();
    }
  }
}
