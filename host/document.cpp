#include "host/document.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#define TOML_EXCEPTIONS 0
#include <toml++/toml.h>

namespace scanhost {
namespace {

Position position(const toml::source_region& source) {
  return {source.begin.line, source.begin.column};
}

Value convert(const toml::node& node);

void add_entries(const toml::table& table, Value& value) {
  for (const auto& [key, node] : table)
    value.entries.push_back({std::string(key.str()), position(key.source()), convert(node)});
  // The parser keeps a table sorted by its keys.
  std::ranges::stable_sort(value.entries, {}, [](const Entry& entry) {
    return std::pair(entry.at.line, entry.at.column);
  });
}

Value convert(const toml::node& node) {
  Value value;
  value.at = position(node.source());
  if (const toml::table* table = node.as_table()) {
    value.kind = Value::Kind::kTable;
    add_entries(*table, value);
  } else if (const toml::array* array = node.as_array()) {
    value.kind = Value::Kind::kArray;
    for (const toml::node& item : *array) value.items.push_back(convert(item));
  } else if (const auto* text = node.as_string()) {
    value.kind = Value::Kind::kText;
    value.text = text->get();
  } else if (const auto* flag = node.as_boolean()) {
    value.kind = Value::Kind::kFlag;
    value.integer = flag->get() ? 1 : 0;
    value.number = flag->get() ? 1.0 : 0.0;
  } else if (const auto* integer = node.as_integer()) {
    value.kind = Value::Kind::kInteger;
    value.integer = integer->get();
    value.number = static_cast<double>(integer->get());
  } else if (const auto* number = node.as_floating_point()) {
    value.kind = Value::Kind::kNumber;
    value.number = number->get();
  } else {
    value.kind = Value::Kind::kTime;
  }
  return value;
}

void report(const toml::parse_error& error, Problems& problems) {
  std::string wrong(error.description());
  // "Error while parsing key-value pair: ..."
  if (const std::size_t colon = wrong.find(": "); wrong.starts_with("Error") && colon != wrong.npos)
    wrong.erase(0, colon + 2);
  const bool twice = wrong.find("redefine") != std::string::npos;
  problems.add(position(error.source()), wrong,
               twice ? "each name stands once in its table" : "see the TOML syntax (toml.io)");
}

}  // namespace

const Entry* Value::find(std::string_view key) const {
  for (const Entry& entry : entries)
    if (entry.key == key) return &entry;
  return nullptr;
}

const char* kind_name(Value::Kind kind) {
  switch (kind) {
    case Value::Kind::kFlag:
      return "a truth value";
    case Value::Kind::kInteger:
    case Value::Kind::kNumber:
      return "a number";
    case Value::Kind::kText:
      return "a text";
    case Value::Kind::kArray:
      return "a list";
    case Value::Kind::kTable:
      return "a table";
    case Value::Kind::kTime:
      break;
  }
  return "a date or time";
}

Value read_document(const std::string& path, Problems& problems) {
  std::ifstream stream(path, std::ios::binary);
  std::error_code is_a_file;
  if (!stream.is_open() || std::filesystem::is_directory(path, is_a_file))
    throw Rejection(path + ": cannot be read: " + std::strerror(stream.is_open() ? EISDIR : errno) +
                    "; give the path of a control program\n");
  const std::string content{std::istreambuf_iterator<char>(stream), {}};
  const toml::parse_result result = toml::parse(content, path);
  if (result.succeeded()) return convert(result.table());
  report(result.error(), problems);
  return {};
}

}  // namespace scanhost
