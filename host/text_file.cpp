#include "host/text_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace scanhost {
namespace {

template <class Call>
ssize_t retry(Call call) {
  for (;;) {
    const ssize_t result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

}  // namespace

TextFile::TextFile(TextFile&& other) noexcept
    : path_(std::move(other.path_)),
      mode_(other.mode_),
      file_(std::exchange(other.file_, -1)),
      length_(other.length_) {}

int TextFile::open() {
  if (file_ >= 0 && !is_replaced()) return 0;
  close();
  // Neither a pipe nor a device may hold up the scan.
  const int flags = mode_ == Mode::kRead ? O_RDONLY : O_WRONLY | O_CREAT | O_TRUNC;
  file_ = static_cast<int>(
      retry([&] { return ::open(path_.c_str(), flags | O_NONBLOCK | O_CLOEXEC, 0666); }));
  length_ = 0;
  return file_ < 0 ? errno : 0;
}

void TextFile::close() {
  if (file_ >= 0) ::close(file_);
  file_ = -1;
}

// True if another file was moved to the path, or the file was removed.
bool TextFile::is_replaced() const {
  struct stat status {};
  return fstat(file_, &status) < 0 || status.st_nlink == 0;
}

int TextFile::read(char* buffer, std::size_t size, std::string_view& text) {
  if (const int error = open(); error != 0) return error;
  ssize_t count = retry([&] { return pread(file_, buffer, size, 0); });
  if (count < 0 && errno == ESPIPE) count = retry([&] { return ::read(file_, buffer, size); });
  if (count < 0) {
    const int error = errno;
    close();
    return error;
  }
  text = {buffer, static_cast<std::size_t>(count)};
  return 0;
}

int TextFile::write(std::string_view text) {
  if (const int error = open(); error != 0) return error;
  ssize_t count = retry([&] { return pwrite(file_, text.data(), text.size(), 0); });
  if (count < 0 && errno == ESPIPE)
    count = retry([&] { return ::write(file_, text.data(), text.size()); });
  if (count != static_cast<ssize_t>(text.size())) {
    const int error = count < 0 ? errno : ENOSPC;
    close();
    return error;
  }
  if (text.size() < length_ && ftruncate(file_, static_cast<off_t>(text.size())) < 0) close();
  length_ = text.size();
  return 0;
}

}  // namespace scanhost
