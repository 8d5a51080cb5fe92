#include "host/csv.h"

#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>
#include <optional>

#include "host/number.h"

namespace scanhost {
namespace {

constexpr std::size_t kMaxReported = 5;  // problems of one file; a wrong file has one in every line

std::string_view trim(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  text = text.substr(0, text.find_last_not_of(kBlanks) + 1);
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
    text = text.substr(1, text.size() - 2);
  return text;
}

std::vector<std::string_view> split(std::string_view line) {
  std::vector<std::string_view> fields;
  for (;;) {
    const std::size_t comma = line.find(',');
    fields.push_back(trim(line.substr(0, comma)));
    if (comma == std::string_view::npos) return fields;
    line.remove_prefix(comma + 1);
  }
}

// Why the first line could not be read; a directory opens and cannot be read.
std::string no_header(const std::ifstream& stream) {
  if (!stream.is_open()) return std::strerror(errno);
  return stream.bad() ? std::strerror(EISDIR) : "no header line";
}

std::vector<std::string> names_in(std::string_view header) {
  if (header.starts_with("\xEF\xBB\xBF")) header.remove_prefix(3);
  std::vector<std::string> names;
  for (const std::string_view name : split(header)) names.emplace_back(name);
  return names;
}

class SeriesReader {
 public:
  SeriesReader(const std::string& path, const std::string& column, Position at, Problems& problems)
      : path_(path), column_name_(column), at_(at), problems_(problems) {}

  Series read() {
    std::ifstream stream(path_);
    std::string line;
    if (!std::getline(stream, line)) {
      problems_.add(at_, "'" + path_ + "' cannot be read: " + no_header(stream),
                    "give a CSV file whose first line names the columns; the path is relative to "
                    "the program");
      return {};
    }
    if (!find_column(line)) return {};
    while (reported_ < kMaxReported && std::getline(stream, line)) {
      ++line_;
      if (!trim(line).empty()) add_row(split(line));
    }
    if (series_.times.empty() && reported_ == 0) report("there are no values", "add rows");
    return std::move(series_);
  }

 private:
  void report(const std::string& wrong, const std::string& right) {
    problems_.add(path_, {line_, 0}, wrong, right);
    ++reported_;
  }

  bool find_column(std::string_view header) {
    std::vector<std::string> names = names_in(header);
    if (names.size() < 2) {
      report("the header names no column beside the time",
             "separate the columns by commas: time,value");
      return false;
    }
    if (column_name_.empty() && names.size() == 2) column_name_ = names[1];
    for (std::size_t i = 1; i < names.size(); ++i)
      if (names[i] == column_name_) column_ = i;
    if (column_ > 0) return true;
    names.erase(names.begin());
    problems_.add(at_,
                  column_name_.empty() ? "'" + path_ + "' has several columns"
                                       : "'" + path_ + "' has no column '" + column_name_ + "'",
                  column_name_.empty() ? "name one: column = \"" + names.front() + "\""
                                       : suggest(column_name_, names, "see its first line"));
    return false;
  }

  std::optional<Duration> row_time(std::string_view text) {
    if (const auto seconds = parse_number(text); seconds && std::fabs(*seconds) < 1e11) {
      if (by_clock(false)) return Duration(std::llround(*seconds * 1e6));
    } else if (const auto time = parse_time(text)) {
      if (by_clock(true)) return time->time_since_epoch();
    }
    report(
        "'" + std::string(text) + "' is no time like that of the first row",
        std::string("write seconds from the start in all rows, or ISO 8601 times in all rows, ") +
            kTimeExamples);
    return {};
  }

  // The first row decides which of the two the times are.
  bool by_clock(bool clock) {
    if (series_.times.empty()) series_.by_clock = clock;
    return series_.by_clock == clock;
  }

  void add_row(const std::vector<std::string_view>& fields) {
    const std::optional<Duration> time = row_time(fields[0]);
    if (!time) return;
    if (!series_.times.empty() && *time < series_.times.back()) {
      report("the time '" + std::string(fields[0]) + "' lies before that of the row above",
             "sort the rows by time; local times around a change of the clock need an offset, such "
             "as +02:00");
      return;
    }
    if (fields.size() <= column_) {
      report("the row has " + std::to_string(fields.size()) + " fields, column '" + column_name_ +
                 "' is number " + std::to_string(column_ + 1),
             "complete the row; an empty field is no value");
      return;
    }
    double value = std::numeric_limits<double>::quiet_NaN();
    if (!fields[column_].empty()) {
      const std::optional<double> number = parse_number(fields[column_]);
      if (!number) {
        report("'" + std::string(fields[column_]) + "' is no number",
               "write one with a decimal point, or leave the field empty");
        return;
      }
      value = *number;
    }
    series_.times.push_back(*time);
    series_.values.push_back(value);
  }

  const std::string& path_;
  std::string column_name_;
  Position at_;
  Problems& problems_;
  std::size_t column_ = 0;
  std::uint32_t line_ = 1;
  std::size_t reported_ = 0;
  Series series_;
};

}  // namespace

std::vector<std::string> read_columns(const std::string& path, Problems& problems) {
  std::ifstream stream(path);
  std::string line;
  if (!std::getline(stream, line)) {
    problems.add({}, "cannot be read: " + no_header(stream),
                 "give a CSV file whose first line names the columns");
    return {};
  }
  std::vector<std::string> names = names_in(line);
  names.erase(names.begin());
  return names;
}

Series read_series(const std::string& path, const std::string& column, Position at,
                   Problems& problems) {
  return SeriesReader(path, column, at, problems).read();
}

}  // namespace scanhost
