// State files as bytes.
#pragma once

#include <string>
#include <utility>
#include <vector>

using Records = std::vector<std::pair<std::string, std::string>>;

// One record's 96 bytes; key and value are cut at the ends of their fields.
inline std::string record(std::string key, std::string value) {
  key.resize(32);
  value.resize(64);
  return key + value;
}

inline std::string image(const Records& records) {
  std::string bytes;
  for (const auto& [key, value] : records) bytes += record(key, value);
  return bytes;
}
