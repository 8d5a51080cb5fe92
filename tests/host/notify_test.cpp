// The host under a service manager: the test holds the manager's socket.
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "host/notify.h"
#include "tests/support/scanhost.h"

namespace {

class Manager {
 public:
  // "@..." is an abstract name.
  explicit Manager(const std::string& name) : socket_(socket(AF_UNIX, SOCK_DGRAM, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, name.data(), name.size());
    if (name[0] == '@') address.sun_path[0] = '\0';
    const std::size_t size =
        offsetof(sockaddr_un, sun_path) + name.size() + (name[0] == '@' ? 0 : 1);
    EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address), static_cast<socklen_t>(size)), 0)
        << name;
    setenv("NOTIFY_SOCKET", name.c_str(), 1);
  }
  ~Manager() {
    for (const char* name : {"NOTIFY_SOCKET", "WATCHDOG_USEC", "WATCHDOG_PID"}) unsetenv(name);
    close(socket_);
  }
  // The next message; "" where none comes within the time.
  std::string message(int milliseconds = 30000) const {
    pollfd waiting{socket_, POLLIN, 0};
    if (poll(&waiting, 1, milliseconds) != 1) return "";
    char text[512];
    const ssize_t size = recv(socket_, text, sizeof text, 0);
    return {text, static_cast<std::size_t>(size)};
  }

 private:
  int socket_;
};

const char* const kProgram = R"(
[program]
name = "Served"
scan = "20ms"
[[block]]
name = "B"
type = "Scale"
in   = { Enable = 1 }
)";

TEST(Notify, IsReadyAliveAndStopping) {
  for (const bool abstract : {false, true}) {
    Host host(kProgram);
    const std::string path = host.directory() / "socket";
    const Manager manager(abstract ? "@scanblocks-" + path : path);
    setenv("WATCHDOG_USEC", "400000", 1);
    host.start("run p.toml --state elsewhere");
    EXPECT_EQ(manager.message().find("READY=1\nWATCHDOG=1\nSTATUS=1 scans, "), 0u);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(manager.message().find("WATCHDOG=1\nSTATUS="), 0u);
    const Host::Result result = host.stop(SIGTERM);
    EXPECT_EQ(result.status, 0) << result.err;
    std::string last;
    for (std::string next; !(next = manager.message(0)).empty();) last = next;
    EXPECT_EQ(last.find("STOPPING=1\nSTATUS="), 0u) << last;
    EXPECT_TRUE(std::filesystem::is_directory(host.directory() / "elsewhere"));
    EXPECT_FALSE(std::filesystem::exists(host.directory() / "state"));
  }
}

// With the longest scan that is taken each scan gives one, also where it comes a little early.
TEST(Notify, GivesASignOfLifeInTime) {
  const TemporaryDirectory directory;
  const Manager manager(directory.path() / "socket");
  setenv("WATCHDOG_USEC", "400000", 1);
  scanhost::Notifier notifier;
  for (const int milliseconds : {1, 199, 400, 599, 799}) {
    notifier.scanned({}, std::chrono::milliseconds(milliseconds));
    EXPECT_TRUE(has(manager.message(0), "WATCHDOG=1")) << milliseconds;
  }
}

TEST(Notify, KeepsQuietForAnotherProcessAndRefusesATightWatchdog) {
  Host host(kProgram);
  const Manager manager(host.directory() / "socket");
  setenv("WATCHDOG_USEC", "30000", 1);
  Host::Result result = host.run("run p.toml --cycles 9");
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(has(result.err, "set WatchdogSec to more"));
  setenv("WATCHDOG_PID", "1", 1);
  result = host.run("run p.toml --cycles 9");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(manager.message(0).find("READY=1"), 0u);
  EXPECT_EQ(manager.message(0).find("STOPPING=1"), 0u);  // nothing in between

  setenv("NOTIFY_SOCKET", "relative", 1);
  EXPECT_EQ(host.run("run p.toml --cycles 1").status, 1);
}

}  // namespace
