#include "tests/support/scanhost.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

Host::~Host() {
  if (process_ > 0) stop(SIGKILL);
}

void Host::write(const std::string& name, const std::string& text) const {
  std::ofstream(directory_.path() / name) << text;
}

std::string Host::read(const std::string& name) const {
  std::ifstream stream(directory_.path() / name);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void Host::start(const std::string& arguments) {
  const std::string command = "cd '" + directory_.path().string() +
                              "' && TZ=Europe/Berlin exec " SCANHOST_COMMAND " " + arguments +
                              " >stdout 2>stderr";
  process_ = fork();
  if (process_ > 0) return;
  execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
  _exit(127);
}

void Host::send(int signal) const { kill(process_, signal); }

Host::Result Host::stop(int signal) {
  if (signal != 0) send(signal);
  int status = 0;
  waitpid(process_, &status, 0);
  process_ = 0;
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read("stdout"), read("stderr")};
}

Host::Result Host::run(const std::string& arguments) {
  start(arguments);
  return stop(0);
}

bool Host::eventually(const std::string& name, const std::string& text) const {
  for (int i = 0; i < 3000; ++i) {
    if (read(name) == text) return true;
    usleep(10000);
  }
  ADD_FAILURE() << name << " has \"" << read(name) << "\", not \"" << text << "\"\n"
                << read("stderr");
  return false;
}

testing::AssertionResult has(const std::string& text, const std::string& part) {
  if (text.find(part) != std::string::npos) return testing::AssertionSuccess();
  return testing::AssertionFailure() << part << "\nis not in\n" << text;
}
