#include "host/section.h"

#include <algorithm>

namespace scanhost {

const Entry* Section::find(const std::string& key) {
  if (std::ranges::find(known_, key) == known_.end()) known_.push_back(key);
  return table_.find(key);
}

const Value* Section::value(const std::string& key, bool fits(const Value&),
                            const std::string& right) {
  const Entry* entry = find(key);
  if (entry == nullptr) return nullptr;
  if (fits(entry->value)) return &entry->value;
  problems_.add(entry->value.at,
                "'" + key + "' of " + title_ + " is " + kind_name(entry->value.kind), right);
  return nullptr;
}

std::optional<std::string> Section::text(const std::string& key) {
  const Value* found = value(
      key, [](const Value& v) { return v.is_text(); }, "write a text: " + key + " = \"...\"");
  if (found == nullptr) return {};
  if (!found->text.empty()) return found->text;
  problems_.add(found->at, "'" + key + "' of " + title_ + " is empty",
                "write a text or leave the key out");
  return {};
}

std::optional<double> Section::number(const std::string& key) {
  const Value* found = value(
      key, [](const Value& v) { return v.is_number(); }, "write a number: " + key + " = 0");
  if (found == nullptr) return {};
  return found->number;
}

std::optional<std::int64_t> Section::integer(const std::string& key, std::int64_t low,
                                             std::int64_t high) {
  const std::string right =
      "write a whole number from " + std::to_string(low) + " to " + std::to_string(high);
  const Value* found = value(
      key, [](const Value& v) { return v.kind == Value::Kind::kInteger; }, right);
  if (found == nullptr) return {};
  if (found->integer >= low && found->integer <= high) return found->integer;
  problems_.add(found->at, "'" + key + "' of " + title_ + " is " + std::to_string(found->integer),
                right);
  return {};
}

std::optional<bool> Section::flag(const std::string& key) {
  const Value* found = value(
      key, [](const Value& v) { return v.kind == Value::Kind::kFlag; }, "write true or false");
  if (found == nullptr) return {};
  return found->integer != 0;
}

std::optional<Duration> Section::duration(const std::string& key) {
  const Value* found = value(
      key, [](const Value& v) { return v.is_text(); },
      std::string("write a duration, ") + kDurationExamples);
  if (found == nullptr) return {};
  const std::optional<Duration> duration = parse_duration(found->text);
  if (duration && *duration > Duration::zero()) return duration;
  problems_.add(found->at,
                "'" + key + "' of " + title_ + " is \"" + found->text +
                    "\", which is no positive duration up to 36500d",
                std::string("write a number with its unit, ") + kDurationExamples);
  return {};
}

const Value* Section::table(const std::string& key) {
  return value(
      key, [](const Value& v) { return v.is_table(); },
      "write a table: " + key + " = { ... } or [" + key + "]");
}

const Value* Section::list(const std::string& key) {
  return value(
      key, [](const Value& v) { return v.kind == Value::Kind::kArray; },
      "write a list: " + key + " = [ ... ], or [[" + key + "]] before each table");
}

void Section::require(const std::string& key, const std::string& example) {
  if (table_.find(key) == nullptr)
    problems_.add(at_, title_ + " has no '" + key + "'", "add one: " + example);
}

void Section::finish() {
  for (const Entry& entry : table_.entries) {
    if (std::ranges::find(known_, entry.key) == known_.end())
      problems_.add(entry.at, title_ + " has no key '" + entry.key + "'",
                    suggest(entry.key, known_, ""));
  }
}

}  // namespace scanhost
