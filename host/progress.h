// How far a long simulation is, on standard error where that is a terminal.
#pragma once

#include <cstdint>

namespace scanhost {

class Progress {
 public:
  explicit Progress(std::uint64_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Shows share and remaining time, at most twice a second and not in the first second.
  void show(std::uint64_t done);

 private:
  std::uint64_t total_;
  bool terminal_;
  bool shown_ = false;
  std::uint64_t start_;
  std::uint64_t next_;
};

}  // namespace scanhost
