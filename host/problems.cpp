#include "host/problems.h"

#include <algorithm>
#include <cctype>
#include <tuple>

namespace scanhost {
namespace {

char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

// Edits that turn one name into the other, upper and lower case alike: insert, delete, replace and
// swap of neighbours.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before_last(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    before_last.swap(last);
    last.swap(row);
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool same = lower(a[i - 1]) == lower(b[j - 1]);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
      if (i > 1 && j > 1 && lower(a[i - 1]) == lower(b[j - 2]) &&
          lower(a[i - 2]) == lower(b[j - 1]))
        row[j] = std::min(row[j], before_last[j - 2] + 1);
    }
  }
  return row[b.size()];
}

}  // namespace

void Problems::add(Position at, const std::string& wrong, const std::string& right) {
  add(file_, at, wrong, right);
}

void Problems::add(const std::string& file, Position at, const std::string& wrong,
                   const std::string& right) {
  problems_.push_back({file, at, right.empty() ? wrong : wrong + "; " + right});
}

std::string Problems::text() const {
  std::vector<Problem> sorted = problems_;
  const auto order = [this](const Problem& problem) {
    return std::tuple(problem.file != file_, problem.file, problem.at.line, problem.at.column);
  };
  std::ranges::stable_sort(sorted, {}, order);
  std::string text;
  for (const Problem& problem : sorted) {
    text += problem.file;
    if (problem.at.line > 0) text += ":" + std::to_string(problem.at.line);
    if (problem.at.column > 0) text += ":" + std::to_string(problem.at.column);
    text += ": " + problem.text + "\n";
  }
  return text;
}

std::string suggest(std::string_view wrong, const std::vector<std::string>& names,
                    const std::string& otherwise) {
  std::size_t best = 1 + std::max<std::size_t>(1, wrong.size() / 3);
  const std::string* nearest = nullptr;
  for (const std::string& name : names) {
    const std::size_t edits = distance(wrong, name);
    if (edits < best && edits < std::min(wrong.size(), name.size())) {
      best = edits;
      nearest = &name;
    }
  }
  if (nearest != nullptr) return "did you mean '" + *nearest + "'?";
  if (names.empty() || names.size() > 16) return otherwise;
  std::string list = names.size() == 1 ? "there is only " : "there are ";
  for (const std::string& name : names) list += (&name == names.data() ? "'" : ", '") + name + "'";
  return list;
}

}  // namespace scanhost
