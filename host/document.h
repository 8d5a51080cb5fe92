// A TOML document as a tree of values with their positions, entries in the order of the file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/problems.h"

namespace scanhost {

struct Entry;

struct Value {
  enum class Kind { kFlag, kInteger, kNumber, kText, kArray, kTable, kTime };

  Kind kind = Kind::kTable;
  Position at;
  double number = 0.0;       // of kFlag, kInteger and kNumber
  std::int64_t integer = 0;  // of kFlag and kInteger
  std::string text;
  std::vector<Value> items;
  std::vector<Entry> entries;

  bool is_table() const { return kind == Kind::kTable; }
  bool is_text() const { return kind == Kind::kText; }
  bool is_number() const { return kind <= Kind::kNumber; }
  const Entry* find(std::string_view key) const;
};

struct Entry {
  std::string key;
  Position at;  // of the key
  Value value;
};

// The words for error messages: "a text", "a table", ...
const char* kind_name(Value::Kind kind);

// Reads the file; a syntax error goes to `problems` and gives an empty table.
// Throws Rejection if the file cannot be read.
Value read_document(const std::string& path, Problems& problems);

}  // namespace scanhost
