// What is wrong with a program, where, and what would be right. All of it is collected, so that one
// run of `scanhost check` shows everything.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace scanhost {

// Both count from 1; 0 is unknown.
struct Position {
  std::uint32_t line = 0;
  std::uint32_t column = 0;
};

class Problems {
 public:
  explicit Problems(std::string file) : file_(std::move(file)) {}

  // A problem in the program file itself. `right` may be empty.
  void add(Position at, const std::string& wrong, const std::string& right);
  // A problem in a file that the program names.
  void add(const std::string& file, Position at, const std::string& wrong,
           const std::string& right);

  bool empty() const { return problems_.empty(); }
  const std::string& file() const { return file_; }

  // One line each, in the order of the file: "file:line:column: what is wrong; what would be
  // right".
  std::string text() const;

 private:
  struct Problem {
    std::string file;
    Position at;
    std::string text;
  };
  std::string file_;
  std::vector<Problem> problems_;
};

// Something outside the program failed: the library, the state directory, a permission.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};
// The command line or the program is wrong; the text may have several lines.
struct Rejection : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// "did you mean 'Scale'?" if one of the names is close to `wrong`, otherwise "one of A, B, C", or
// `otherwise` where that list would be long.
std::string suggest(std::string_view wrong, const std::vector<std::string>& names,
                    const std::string& otherwise);

}  // namespace scanhost
