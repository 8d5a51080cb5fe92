// Reads one table of a program key by key, and reports what does not fit. The keys that were asked
// for are the keys that exist: every other one is reported by finish().
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/document.h"
#include "host/problems.h"
#include "host/time.h"

namespace scanhost {

class Section {
 public:
  // `title` is what the messages call the table.
  Section(const Value& table, Position at, std::string title, Problems& problems)
      : table_(table), at_(at), title_(std::move(title)), problems_(problems) {}

  Position at() const { return at_; }
  const Entry* find(const std::string& key);
  const Entry& entry(const std::string& key) { return *find(key); }

  // Nothing if the key is absent or, reported, of another type.
  std::optional<std::string> text(const std::string& key);
  std::optional<double> number(const std::string& key);  // true and false count as 1 and 0
  std::optional<std::int64_t> integer(const std::string& key, std::int64_t low, std::int64_t high);
  std::optional<bool> flag(const std::string& key);
  std::optional<Duration> duration(const std::string& key);  // positive
  const Value* table(const std::string& key);
  const Value* list(const std::string& key);

  // Reports an absent key; `example` shows a right one.
  void require(const std::string& key, const std::string& example);
  void finish();

 private:
  const Value* value(const std::string& key, bool fits(const Value&), const std::string& right);

  const Value& table_;
  Position at_;
  std::string title_;
  Problems& problems_;
  std::vector<std::string> known_;
};

}  // namespace scanhost
