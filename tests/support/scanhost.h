// The real scanhost as a process, in a directory of its own with the files of a control program.
#pragma once

#include <sys/types.h>

#include <string>

#include "tests/support/rig.h"

class Host {
 public:
  struct Result {
    int status;
    std::string out;
    std::string err;
  };

  // With the control program, p.toml.
  explicit Host(const std::string& program = "") { write("p.toml", program); }
  ~Host();

  const std::filesystem::path& directory() const { return directory_.path(); }

  void write(const std::string& name, const std::string& text) const;
  std::string read(const std::string& name) const;  // "" if there is no such file

  // Runs `scanhost ARGUMENTS` in the directory, in the time zone of Berlin.
  Result run(const std::string& arguments);

  // The same in the background; stop sends the signal and waits for the end.
  void start(const std::string& arguments);
  void send(int signal) const;
  Result stop(int signal);

  // True as soon as the file has just this text; false after half a minute.
  bool eventually(const std::string& name, const std::string& text) const;

 private:
  TemporaryDirectory directory_;
  pid_t process_ = 0;
};

// Whether the text has the part; both are shown where it should have it.
testing::AssertionResult has(const std::string& text, const std::string& part);
