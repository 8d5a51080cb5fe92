// A small file that holds one value as text, kept open: an attribute in /sys, or a plain file.
#pragma once

#include <string>
#include <string_view>

namespace scanhost {

class TextFile {
 public:
  enum class Mode { kRead, kWrite };

  TextFile(std::string path, Mode mode) : path_(std::move(path)), mode_(mode) {}
  TextFile(TextFile&& other) noexcept;
  TextFile& operator=(TextFile&&) = delete;
  ~TextFile() { close(); }

  const std::string& path() const { return path_; }

  // Reads from the start of the file up to `size` bytes. Returns 0 or the error number.
  int read(char* buffer, std::size_t size, std::string_view& text);
  // Makes the text the content of the file, which is made if missing. Returns 0 or the error
  // number.
  int write(std::string_view text);

 private:
  int open();
  void close();
  bool is_replaced() const;

  std::string path_;
  Mode mode_;
  int file_ = -1;
  std::size_t length_ = 0;  // of the text written last
};

}  // namespace scanhost
