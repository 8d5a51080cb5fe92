#include "blocks/sysinfo/probe.h"

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

namespace scanblocks {
namespace {

// The result is of no use: the output counts. With SIGCHLD ignored system() waits as always and
// then reports that there is no child.
void shell(const char* command) {
  if (system(command) != 0) return;
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Takes one decimal number: white space, a sign, digits. Without digits the text has no number
// here.
bool take_number(const char*& text, std::int32_t& number) {
  const char* at = text + strspn(text, " \t\n\v\f\r");
  const bool minus = *at == '-';
  if (*at == '-' || *at == '+') ++at;
  if (!is_digit(*at)) return false;
  const std::int64_t limit = minus ? -std::int64_t{INT32_MIN} : INT32_MAX;
  std::int64_t value = 0;
  for (; is_digit(*at); ++at) {
    value = value * 10 + (*at - '0');
    if (value > limit) value = limit;
  }
  number = static_cast<std::int32_t>(minus ? -value : value);
  text = at;
  return true;
}

}  // namespace

bool run(const Probe& probe, char (&text)[kMaxOutput + 1]) {
  shell(probe.remove);
  shell(probe.measure);
  int file;
  do {
    file = open(probe.file, O_RDONLY | O_CLOEXEC);
  } while (file < 0 && errno == EINTR);
  if (file < 0) return false;
  ssize_t size;
  do {
    size = read(file, text, kMaxOutput);
  } while (size < 0 && errno == EINTR);
  close(file);
  if (size <= 0 || size >= kMaxOutput) return false;  // a full read may have cut the output
  text[size] = '\0';
  return true;
}

std::int32_t third_number_after(const char* name, const char* text) {
  const char* at = strstr(text, name);
  if (at == nullptr) return kNoLine;
  at += strlen(name);
  std::int32_t number = 0;
  for (int i = 0; i < 3; ++i)
    if (!take_number(at, number)) return 0;
  return number;
}

}  // namespace scanblocks
