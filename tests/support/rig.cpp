#include "tests/support/rig.h"

#include <dlfcn.h>
#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

using scanblocks::BlockInfo;
using scanblocks::Field;

void* exported(const char* name) {
  static void* library = dlopen(SCANBLOCKS_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    ADD_FAILURE() << dlerror();
    std::exit(2);
  }
  return dlsym(library, name);
}

double utc(const std::string& text) {
  tm parts{};
  const char* end = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%S", &parts);
  EXPECT_TRUE(end != nullptr && *end == '\0') << text << " is no YYYY-MM-DDThh:mm:ss";
  // timegm ends in 2038 on 32-bit machines.
  using namespace std::chrono;
  const auto day = year(parts.tm_year + 1900) / (parts.tm_mon + 1) / parts.tm_mday;
  return static_cast<double>(sys_days(day).time_since_epoch().count()) * 86400.0 +
         parts.tm_hour * 3600 + parts.tm_min * 60 + parts.tm_sec;
}

TimeZone::TimeZone(const char* zone) { setenv("TZ", zone, 1); }

TimeZone::~TimeZone() { unsetenv("TZ"); }

TemporaryDirectory::TemporaryDirectory() {
  std::string name = (std::filesystem::temp_directory_path() / "scanblocks-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no temporary directory: " << name;
  path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

namespace {

std::size_t pin_of(std::span<const Field> fields, const std::string& name, std::size_t first) {
  for (std::size_t i = 0; i < fields.size(); ++i)
    if (name == fields[i].name) return first + i;
  ADD_FAILURE() << "no pin " << name;
  return 0;
}

std::vector<std::string> words(const std::string& line) {
  std::istringstream stream(line);
  return {std::istream_iterator<std::string>(stream), {}};
}

bool is_pattern(const std::string& cell) { return cell[0] == '#'; }

double number_in(const std::string& cell) {
  if (!is_pattern(cell)) return std::strtod(cell.c_str(), nullptr);
  return std::bit_cast<double>(std::uint64_t{std::strtoull(&cell[1], nullptr, 16)});
}

bool has_number(const std::string& cell, double b) {
  const double a = number_in(cell);
  if (is_pattern(cell)) return std::memcmp(&a, &b, sizeof a) == 0;
  return (std::isnan(a) && std::isnan(b)) || a == b;
}

}  // namespace

Rig::Rig(const std::string& block, const Values& inputs) : info_(scanblocks::find_block(block)) {
  function_ = reinterpret_cast<void (*)(const Pin*, Pin*)>(exported(block.c_str()));
  if (info_ == nullptr || function_ == nullptr) {
    ADD_FAILURE() << "no block " << block;
    std::exit(2);
  }
  set_text(SCANBLOCKS_STATE_DIR, directory().string());
  set_text(SCANBLOCKS_INSTANCE_TAG, "I");
  set_text(SCANBLOCKS_GROUP_TAG, "G");
  for (const auto& [name, value] : inputs) set(name, value);
}

void Rig::set(const std::string& input, double value) {
  in_pins[pin_of(info_->inputs, input, SCANBLOCKS_FIRST_VALUE)].Value = value;
}

void Rig::set_text(int pin, const std::string& text) {
  char(&field)[sizeof(Pin::Text)] = in_pins[pin].Text;
  std::memset(field, 0, sizeof field);
  std::memcpy(field, text.data(), std::min(text.size(), sizeof field));
}

void Rig::call() { function_(in_pins, out_pins); }

void Rig::call_at(double seconds) {
  fake_clock.set(seconds);
  call();
}

double Rig::out(const std::string& output) const {
  return out_pins[pin_of(info_->outputs, output, 0)].Value;
}

std::filesystem::path Rig::file() const {
  const auto text = [&](int pin) {
    return std::string(in_pins[pin].Text, strnlen(in_pins[pin].Text, sizeof(Pin::Text) - 1));
  };
  const std::string name = std::string(info_->name) + "_" + text(SCANBLOCKS_GROUP_TAG) + "_" +
                           text(SCANBLOCKS_INSTANCE_TAG) + ".dat";
  return std::filesystem::path(text(SCANBLOCKS_STATE_DIR)) / name;
}

std::string Rig::bytes() const {
  std::ifstream stream(file(), std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

Records Rig::records() const {
  const std::string all = bytes();
  Records records;
  for (std::size_t at = 0; at + 96 <= all.size(); at += 96)
    records.emplace_back(all.substr(at, strnlen(&all[at], 32)),
                         all.substr(at + 32, strnlen(&all[at + 32], 64)));
  return records;
}

bool Rig::has_own_records() const {
  const Records found = records();
  return bytes() == image(found) &&
         std::ranges::equal(found, info_->keys, [](const auto& one, const Field& key) {
           return one.first == key.name && !one.second.empty();
         });
}

std::string Rig::state(const std::string& key) const {
  for (const auto& [name, value] : records())
    if (name == key) return value;
  return "";
}

void Rig::write_bytes(const std::string& bytes) const {
  std::ofstream(file(), std::ios::binary | std::ios::trunc) << bytes;
}

void trace(Rig& rig, const std::string& table) {
  std::istringstream lines(table);
  std::vector<std::string> header;
  for (std::string line; std::getline(lines, line);) {
    std::vector<std::string> cells = words(line);
    if (cells.empty()) continue;
    if (header.empty()) {
      header = cells;
      continue;
    }
    SCOPED_TRACE("row: " + line);
    ASSERT_GE(cells.size(), header.size()) << "the row has fewer cells than the header";
    const int readings_before = fake_clock.readings;
    int readings = 0;
    int section = 0;  // inputs, outputs, state keys
    Records stored;
    for (std::size_t i = 0; i <= header.size(); ++i) {
      const bool bar = i == header.size() || header[i] == "|";
      if (bar && section++ == 0) {
        if (!stored.empty()) rig.write_records(stored);
        rig.call();
        fake_clock.step = 0;
        readings = fake_clock.readings - readings_before;
      }
      if (i == header.size()) break;
      if (bar) {
        ASSERT_EQ(cells[i], "|");
        continue;
      }
      if (cells[i] == "-") continue;
      if (section == 2) {
        EXPECT_EQ(rig.state(header[i]), cells[i]) << "key " << header[i];
        continue;
      }
      const double value = number_in(cells[i]);
      if (header[i].back() == '=') {
        stored.emplace_back(header[i].substr(0, header[i].size() - 1), cells[i]);
      } else if (header[i] == "#step") {
        fake_clock.step = static_cast<std::int64_t>(value * 1e6);
      } else if (header[i] == "#clock") {
        EXPECT_EQ(readings, static_cast<int>(value)) << "clock readings";
      } else if (section == 1) {
        EXPECT_PRED2(has_number, cells[i], rig.out(header[i])) << "output " << header[i];
      } else if (header[i] == "t") {
        fake_clock.set(kTraceStart + value);
      } else if (header[i] == "utc") {
        fake_clock.set(utc(cells[i]));
      } else {
        rig.set(header[i], value);
      }
    }
  }
}

void trace(const std::string& block, const Values& inputs, const std::string& table) {
  Rig rig(block, inputs);
  trace(rig, table);
}
