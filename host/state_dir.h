// The directory of the state files: made if missing, and held against a second host.
#pragma once

#include <string>

namespace scanhost {

class StateDir {
 public:
  // Throws Failure if the directory cannot be made or another host holds it.
  explicit StateDir(std::string path);
  // An empty directory of its own that is removed at the end.
  static StateDir temporary();

  StateDir(StateDir&& other) noexcept;
  StateDir& operator=(StateDir&&) = delete;
  ~StateDir();

  const std::string& path() const { return path_; }

 private:
  std::string path_;
  int lock_ = -1;
  bool temporary_ = false;
};

}  // namespace scanhost
