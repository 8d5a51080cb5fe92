#include "host/state_dir.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

#include "host/problems.h"

namespace scanhost {
namespace {

constexpr const char* kLockName = "/.scanhost.lock";

// The process that holds the lock has written its number into the file.
std::string holder(int lock) {
  char text[16] = {};
  const ssize_t count = pread(lock, text, sizeof text - 1, 0);
  return count > 0 ? " (process " + std::string(text, strcspn(text, "\n")) + ")" : "";
}

}  // namespace

StateDir::StateDir(std::string path) : path_(std::move(path)) {
  std::error_code error;
  std::filesystem::create_directories(path_, error);
  if (error) throw Failure("state directory " + path_ + " cannot be made: " + error.message());
  // An old lock file opens also where no block can make its file.
  if (faccessat(AT_FDCWD, path_.c_str(), W_OK | X_OK, AT_EACCESS) < 0)
    throw Failure("state directory " + path_ + ": " + std::strerror(errno) +
                  "; it must be writable");
  const std::string lock_path = path_ + kLockName;
  lock_ = open(lock_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (lock_ < 0)
    throw Failure(lock_path + ": " + std::strerror(errno) +
                  "; the state directory must be writable");
  if (flock(lock_, LOCK_EX | LOCK_NB) < 0) {
    const std::string process = holder(lock_);
    close(lock_);
    throw Failure("state directory " + path_ + " is in use by another scanhost" + process +
                  "; stop that one, or give this program a state directory of its own");
  }
  const std::string process = std::to_string(getpid()) + "\n";
  if (ftruncate(lock_, 0) < 0 ||
      pwrite(lock_, process.data(), process.size(), 0) != static_cast<ssize_t>(process.size()))
    std::fprintf(stderr, "state directory %s: %s; blocks remember nothing while that lasts\n",
                 path_.c_str(), std::strerror(errno));
}

StateDir StateDir::temporary() {
  std::error_code no_error;
  std::string path = std::filesystem::temp_directory_path(no_error).string();
  if (path.empty() || path.size() > 40) path = "/tmp";
  path += "/scanhost-XXXXXX";
  if (mkdtemp(path.data()) == nullptr)
    throw Failure(path + ": " + std::strerror(errno) + "; name a directory: --state DIR");
  StateDir directory(path);
  directory.temporary_ = true;
  return directory;
}

StateDir::StateDir(StateDir&& other) noexcept
    : path_(std::move(other.path_)),
      lock_(std::exchange(other.lock_, -1)),
      temporary_(std::exchange(other.temporary_, false)) {}

StateDir::~StateDir() {
  std::error_code no_error;
  if (temporary_) std::filesystem::remove_all(path_, no_error);
  if (lock_ >= 0) close(lock_);
}

}  // namespace scanhost
