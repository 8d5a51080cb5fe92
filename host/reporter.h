// Messages about something that fails and recovers: each change once, not once per scan.
#pragma once

#include <string>
#include <utility>

namespace scanhost {

class Reporter {
 public:
  // `name` begins the messages: "signal Level: /run/level".
  explicit Reporter(std::string name) : name_(std::move(name)) {}

  void fails(const char* reason, const char* consequence);
  void works(const char* message);

 private:
  std::string name_;
  bool failing_ = false;
};

}  // namespace scanhost
