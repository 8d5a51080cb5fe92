#include "host/report_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace scanhost {
namespace {

void write(const std::string& path, const char* mode, const std::string& text) {
  std::FILE* file = std::fopen(path.c_str(), mode);
  bool written = file != nullptr && std::fputs(text.c_str(), file) >= 0;
  if (file != nullptr) written = std::fclose(file) == 0 && written;
  if (!written) throw Failure(path + ": " + std::strerror(errno));
}

bool is_same_file(const std::string& one, const std::string& other) {
  std::error_code no_error;
  return std::filesystem::is_regular_file(one, no_error) &&
         std::filesystem::equivalent(one, other, no_error);
}

bool reads(const Program& program, SignalSpec::Kind kind, const std::string& path) {
  return std::ranges::any_of(program.signals, [&](const SignalSpec& signal) {
    return signal.kind == kind && is_same_file(path, signal.path);
  });
}

}  // namespace

bool is_recorded(const Program& program, const std::string& path) {
  return is_same_file(path, program.path) || reads(program, SignalSpec::Kind::kSeries, path);
}

void keep_sources(const Program& program, const std::string& path) {
  if (is_recorded(program, path) || reads(program, SignalSpec::Kind::kFile, path))
    throw Rejection("scanhost: " + path +
                    " is read by the program and would be overwritten; name another file\n");
}

void check_report(const Program& program, const std::string& path) {
  keep_sources(program, path);
  write(path, "a", "");
}

void write_report(const std::string& path, const std::string& text) { write(path, "w", text); }

}  // namespace scanhost
