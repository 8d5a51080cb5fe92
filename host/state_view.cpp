#include "host/state_view.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

#include "exports/catalogue.h"
#include "frame/state_file.h"
#include "host/number.h"
#include "host/problems.h"

namespace scanhost {
namespace {

using scanblocks::Field;
using scanblocks::Kind;
using scanblocks::kKeySize;
using scanblocks::kRecordSize;

constexpr std::size_t kValueSize = kRecordSize - kKeySize;

std::string read_bytes(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  std::string bytes;
  if (stream) bytes.assign(std::istreambuf_iterator<char>(stream), {});
  if (!stream.is_open() || stream.bad())
    throw Failure(path + ": " + std::strerror(errno) + "; name a state file");
  return bytes;
}

std::string text_of(const char* bytes, std::size_t size) { return {bytes, strnlen(bytes, size)}; }

bool is_real(Kind kind) { return kind == Kind::kNumber || kind == Kind::kSingle; }

struct Range {
  std::int64_t low;
  std::int64_t high;
};

Range range_of(Kind kind) {
  constexpr std::int64_t kInt32 = std::numeric_limits<std::int32_t>::max();
  switch (kind) {
    case Kind::kFlag:
    case Kind::kExactFlag:
      return {0, 1};
    case Kind::kCount:
      return {0, kInt32};
    case Kind::kUnsigned:
      return {0, std::numeric_limits<std::uint32_t>::max()};
    case Kind::kUnsigned64:
    case Kind::kSigned64:
      return {0, std::numeric_limits<std::int64_t>::max()};
    case Kind::kInteger:
    case Kind::kState:
    case Kind::kNumber:
    case Kind::kSingle:
      break;
  }
  return {-kInt32 - 1, kInt32};
}

std::optional<std::int64_t> parse_integer(std::string_view text) {
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return {};
  return value;
}

bool is_clock(const Field& field, const char* unit) { return std::strcmp(field.unit, unit) == 0; }

// The time of a stamp. The low 32 bits of a count of ms come round every 49.7 days: the nearest.
std::optional<Time> stamp_time(const Field& field, std::int64_t value, Time now) {
  using std::chrono::milliseconds;
  if (is_clock(field, scanblocks::kClockSec)) return Time(std::chrono::seconds(value));
  if (!is_clock(field, scanblocks::kClockMs)) return {};
  if (field.kind == Kind::kUnsigned64 || field.kind == Kind::kSigned64)
    return Time(milliseconds(value));
  const auto present = std::chrono::floor<milliseconds>(now.time_since_epoch());
  const auto age = static_cast<std::int32_t>(static_cast<std::uint32_t>(present.count()) -
                                             static_cast<std::uint32_t>(value));
  return Time(present - milliseconds(age));
}

std::string describe_stamp(Time time, Time now) {
  char text[kTimeSize];
  std::string reading(text, format_time(time, text));
  Duration age = now - time;
  const bool past = age >= Duration::zero();
  if (!past) age = -age;
  if (age >= std::chrono::minutes(1)) age = std::chrono::floor<std::chrono::seconds>(age);
  if (age < std::chrono::milliseconds(1)) return reading + ", now";
  const std::string length = format_duration(age);
  return reading + (past ? ", " + length + " ago" : ", in " + length);
}

void interpret(StateView& view, StateView::Record& record, Time now) {
  const Field& field = *record.field;
  const auto damaged = [&](const std::string& what) {
    view.damage.push_back("the value '" + record.value + "' of " + record.key + " is " + what);
  };
  if (is_real(field.kind)) {
    if (!parse_number(record.value)) damaged("no number");
    return;
  }
  const std::optional<std::int64_t> value = parse_integer(record.value);
  if (!value) return damaged("no whole number");
  const auto [low, high] = range_of(field.kind);
  if (*value < low || *value > high) return damaged("out of range");
  if (field.kind == Kind::kState) {
    const auto& states = view.name.block->states;
    const auto state = std::ranges::find(states, *value, &scanblocks::StateName::number);
    if (state == states.end()) return damaged("no state of the block");
    record.reading = state->name;
  } else if (*value != 0) {
    // Times behind the year 9999 have no date.
    const std::optional<Time> time =
        *value < 253402300800000 ? stamp_time(field, *value, now) : std::optional<Time>{};
    if (!time) return;
    record.reading = describe_stamp(*time, now);
    record.stamp = std::chrono::duration<double>(time->time_since_epoch()).count();
  } else if (is_clock(field, scanblocks::kClockMs) || is_clock(field, scanblocks::kClockSec)) {
    record.reading = "never";
  }
}

[[noreturn]] void unfit(const Field& field, const std::string& text, const std::string& right) {
  throw Rejection("scanhost: '" + text + "' does not fit " + field.name + "; " + right + "\n");
}

// The text that the block itself would write for the value.
std::string encode(const scanblocks::BlockInfo& block, const Field& field, const std::string& text,
                   Time now) {
  if (is_real(field.kind)) {
    std::optional<double> value = parse_number(text);
    if (!value) unfit(field, text, "write a number");
    if (field.kind == Kind::kSingle) value = static_cast<double>(static_cast<float>(*value));
    char buffer[512];
    const int size = std::snprintf(buffer, sizeof buffer, "%f", *value);
    return {buffer, std::min(static_cast<std::size_t>(size), kValueSize - 1)};
  }
  std::optional<std::int64_t> value = parse_integer(text);
  if (text == "true" || text == "false") value = text == "true";
  std::vector<std::string> names;
  for (const scanblocks::StateName& state : block.states) {
    if (field.kind != Kind::kState) break;
    names.emplace_back(state.name);
    if (text == state.name) value = state.number;
  }
  const bool in_ms = is_clock(field, scanblocks::kClockMs);
  const bool is_stamp = in_ms || is_clock(field, scanblocks::kClockSec);
  if (is_stamp && !value) {
    const std::optional<Time> time = text == "now" ? now : parse_time(text);
    if (!time)
      unfit(field, text, std::string("write \"now\", a count or a time, ") + kTimeExamples);
    value = time->time_since_epoch() / (in_ms ? Duration(1000) : Duration(1000000));
    if (range_of(field.kind).high <= std::numeric_limits<std::uint32_t>::max())
      value = static_cast<std::int64_t>(static_cast<std::uint32_t>(*value));
  }
  const auto [low, high] = range_of(field.kind);
  if (!names.empty()) {
    if (!value || std::ranges::find(block.states, *value, &scanblocks::StateName::number) ==
                      block.states.end())
      unfit(field, text, suggest(text, names, "write one of its states"));
  } else if (!value || *value < low || *value > high) {
    unfit(field, text,
          "write a whole number from " + std::to_string(low) + " to " + std::to_string(high));
  }
  return std::to_string(*value);
}

}  // namespace

StateFileName parse_state_name(const std::string& path) {
  const std::string stem = std::filesystem::path(path).stem().string();
  StateFileName name;
  const std::size_t first = stem.find('_');
  name.type = stem.substr(0, first);
  name.block = scanblocks::find_block(name.type);
  if (first == std::string::npos) return name;
  const std::string tags = stem.substr(first + 1);
  const std::size_t second = tags.find('_');
  name.group = tags.substr(0, second);
  if (second == std::string::npos) return name;
  name.instance = tags.substr(second + 1);
  const std::size_t last = tags.rfind('_');
  if (last != second)
    name.note = "split at the first '_'; it may also be group '" + tags.substr(0, last) +
                "', instance '" + tags.substr(last + 1) + "'";
  return name;
}

std::vector<std::string> state_files(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_directory(path, error)) {
    if (std::filesystem::exists(path, error)) return {path};
    throw Failure(path + ": " + std::strerror(ENOENT) + "; name a state file or its directory");
  }
  std::vector<std::string> files;
  for (auto entry = std::filesystem::directory_iterator(path, error);
       !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
    if (entry->path().extension() == ".dat") files.push_back(entry->path().string());
  if (error) throw Failure(path + ": " + error.message());
  std::ranges::sort(files);
  return files;
}

StateView read_state(const std::string& path, Time now) {
  StateView view{.path = path, .name = parse_state_name(path)};
  std::error_code no_error;
  const bool is_file = std::filesystem::is_regular_file(path, no_error);
  if (!is_file && std::filesystem::exists(path, no_error)) {
    view.damage.push_back("no regular file");
    return view;
  }
  const std::string bytes = read_bytes(path);
  const scanblocks::BlockInfo* block = view.name.block;
  if (block == nullptr) {
    view.damage.push_back("'" + view.name.type + "' is no block of the catalogue");
  } else if (block->keys.empty()) {
    view.damage.push_back(view.name.type + " keeps no state");
  }
  std::vector<std::string> seen;
  for (std::size_t at = 0; at + kRecordSize <= bytes.size(); at += kRecordSize) {
    const std::string number = "record " + std::to_string(at / kRecordSize + 1);
    const char* bytes_of_value = &bytes[at + kKeySize];
    StateView::Record record{.field = nullptr,
                             .key = text_of(&bytes[at], kKeySize),
                             .value = text_of(bytes_of_value, kValueSize),
                             .reading = {}};
    if (record.key.empty()) {
      view.damage.push_back(number + " is empty");
      continue;
    }
    if (record.key.size() == kKeySize) view.damage.push_back(number + ": no NUL ends the key");
    if (record.value.size() == kValueSize)
      view.damage.push_back(number + ": no NUL ends the value");
    if (block != nullptr)
      for (const Field& field : block->keys)
        if (record.key == field.name) record.field = &field;
    if (block != nullptr && record.field == nullptr)
      view.damage.push_back(number + ": the key '" + record.key + "' is unknown and skipped");
    if (std::ranges::find(seen, record.key) != seen.end())
      view.damage.push_back(number + ": the key '" + record.key +
                            "' is there again; the last one counts");
    seen.push_back(record.key);
    if (record.field != nullptr) interpret(view, record, now);
    view.records.push_back(std::move(record));
  }
  if (const std::size_t rest = bytes.size() % kRecordSize; rest > 0)
    view.damage.push_back("a piece of " + std::to_string(rest) +
                          " bytes is at the end; records have " + std::to_string(kRecordSize));
  if (block != nullptr)
    for (const Field& field : block->keys)
      if (std::ranges::find(seen, field.name) == seen.end())
        view.damage.push_back("the key '" + std::string(field.name) + "' is missing");
  return view;
}

std::string write_state(const std::string& path, const std::string& assignment, Time now) {
  const std::size_t equals = assignment.find('=');
  const std::string key = assignment.substr(0, equals);
  const scanblocks::BlockInfo* block = parse_state_name(path).block;
  if (block == nullptr)
    throw Rejection("scanhost: " + path +
                    " does not begin with the name of a block; 'scanhost blocks' lists them\n");
  std::vector<std::string> names;
  const Field* field = nullptr;
  for (const Field& row : block->keys) {
    if (key == row.name) field = &row;
    if (row.mark != scanblocks::Mark::kWriteOnly) names.emplace_back(row.name);
  }
  if (equals == std::string::npos)
    throw Rejection("scanhost: '" + assignment + "' is no assignment; write KEY=VALUE\n");
  if (field == nullptr)
    throw Rejection("scanhost: " + std::string(block->name) + " has no key '" + key + "'; " +
                    suggest(key, names, "'scanhost blocks' lists them") + "\n");
  if (field->mark == scanblocks::Mark::kWriteOnly)
    throw Rejection("scanhost: the block never reads " + key + " back; it sets it in every call\n");
  std::string value = encode(*block, *field, assignment.substr(equals + 1), now);

  const std::string bytes = read_bytes(path);
  std::size_t place = bytes.size() / kRecordSize * kRecordSize;  // behind the last whole record
  for (std::size_t at = 0; at + kRecordSize <= bytes.size(); at += kRecordSize)
    if (text_of(&bytes[at], kKeySize) == key) place = at;
  char record[kRecordSize] = {};
  std::ranges::copy(key, record);
  std::ranges::copy(value, record + kKeySize);
  const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  const bool written =
      file >= 0 && pwrite(file, record, sizeof record, static_cast<off_t>(place)) ==
                       static_cast<ssize_t>(sizeof record);
  const int error = errno;
  if (file >= 0) close(file);
  if (!written) throw Failure(path + ": " + std::strerror(error));
  return value;
}

}  // namespace scanhost
