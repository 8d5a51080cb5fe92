#include "tests/support/interpose.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <string.h>
#include <sys/types.h>
#include <unistd.h>

#include <atomic>

std::function<int(Call, std::size_t&)> meddle;
std::function<int(const std::string&)> shell;

namespace {

std::atomic<bool> state_files[1024];

template <class Function>
Function* next(const char* name, Function*) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool fails(Call call, std::size_t& size) {
  if (!meddle) return false;
  const int error = meddle(call, size);
  if (error != 0) errno = error;
  return error != 0;
}

bool is_state(int file) { return file >= 0 && file < 1024 && state_files[std::size_t(file)]; }

}  // namespace

#define VISIBLE __attribute__((visibility("default")))
#define NEXT(name) static const auto real = next(#name, &name)

extern "C" {

VISIBLE int open(const char* path, int flags, ...) {
  NEXT(open);
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  if (strncmp(path, "/mnt/ramdisk/", 13) == 0) path += 13;
  const std::size_t length = strlen(path);
  const bool state = length > 4 && strcmp(path + length - 4, ".dat") == 0;
  std::size_t size = 0;
  if (state && fails(Call::kOpen, size)) return -1;
  const int file = real(path, flags, mode);
  if (file >= 0 && file < 1024) state_files[std::size_t(file)] = state;
  return file;
}

VISIBLE ssize_t read(int file, void* bytes, size_t size) {
  NEXT(read);
  if (is_state(file) && fails(Call::kRead, size)) return -1;
  return real(file, bytes, size);
}

VISIBLE ssize_t pwrite(int file, const void* bytes, size_t size, off_t at) {
  NEXT(pwrite);
  if (is_state(file) && fails(Call::kWrite, size)) return -1;
  return real(file, bytes, size, at);
}

VISIBLE int ftruncate(int file, off_t length) noexcept {
  NEXT(ftruncate);
  std::size_t size = 0;
  if (is_state(file) && fails(Call::kTruncate, size)) return -1;
  return real(file, length);
}

// A close that fails has closed the file.
VISIBLE int close(int file) {
  NEXT(close);
  const bool state = is_state(file);
  if (file >= 0 && file < 1024) state_files[std::size_t(file)] = false;
  std::size_t size = 0;
  const int result = real(file);
  return state && fails(Call::kClose, size) ? -1 : result;
}

VISIBLE int system(const char* command) { return shell ? shell(command) : 0; }

}  // extern "C"
