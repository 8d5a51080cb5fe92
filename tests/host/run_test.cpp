// The real host in real time. Limits are generous: only what must come is waited for.
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <regex>
#include <sstream>

#include "host/figures.h"
#include "host/library.h"
#include "host/scan.h"
#include "tests/support/scanhost.h"

namespace {

const char* const kFollower = R"(
[program]
name = "Follower"
scan = "20ms"
group = "G"
[signals]
Level = { file = "level" }
[[block]]
name = "Follow"
type = "Scale"
in   = { Enable = "Level.ok", InSignal = "Level", InMax = 100, OutMax = 100 }
[[block]]
name = "Hours"
type = "PID"
in   = { Enable = 1, ProcessValue = 1, Kp = 1, Kd = 1, OutMin = -9 }
[outputs]
Valve = { from = "Follow.Q", file = "out/valve", safe = 12.5 }
Loop  = { from = "Hours.Q", file = "loop" }
)";

std::size_t allocations = 0;

}  // namespace

// Not inlined: the compiler would see malloc and delete side by side.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  ++allocations;
  return std::malloc(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

TEST(Run, FollowsItsInputAndContinuesAfterARestart) {
  Host host(kFollower);
  host.write("level", "1000000\n");
  host.start("run p.toml --trace t.csv");
  EXPECT_TRUE(host.eventually("out/valve", "100\n"));
  host.write("level", "3.25\n");
  EXPECT_TRUE(host.eventually("out/valve", "3.25\n"));
  std::filesystem::remove(host.directory() / "level");  // not ok: Follow is disabled
  EXPECT_TRUE(host.eventually("out/valve", "0\n"));
  host.write("new", "7");  // another file takes the place
  std::filesystem::rename(host.directory() / "new", host.directory() / "level");
  EXPECT_TRUE(host.eventually("out/valve", "7\n"));
  EXPECT_TRUE(host.eventually("loop", "-1\n"));  // after the first second

  Host other(kFollower);
  const std::string arguments =
      "run p.toml --cycles 1 --trace t.csv --state " + (host.directory() / "state").string();
  const Host::Result refused = other.run(arguments);
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(has(refused.err, " is in use by another scanhost (process "));
  EXPECT_EQ(other.read("out/valve"), "");

  const Host::Result ended = host.stop(SIGTERM);
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_TRUE(
      std::regex_search(ended.out, std::regex("Follower: [0-9]+ scans of 20ms, [0-9]+ ov")));
  EXPECT_EQ(host.read("out/valve"), "12.5\n");
  EXPECT_EQ(host.read("loop"), "-1\n");  // without a safe value the last one stays
  // The age of the instance goes on: no first second any more.
  EXPECT_EQ(other.run(arguments).status, 0);
  EXPECT_TRUE(has(other.read("t.csv"), ",-1,1\n"));
}

// Every scan takes 50 ms of the 20 ms it has: two deadlines pass each time, none is caught up.
TEST(Run, CountsOverrunsAndSkipsTheMissedDeadlines) {
  Host host(
      "[program]\nscan = \"20ms\"\n[[block]]\nname = \"Slow\"\ntype = \"PID\"\n"
      "in = { Enable = 50 }\n[trace]\nrecord = [\"Slow.Q\"]\n");
  const Host::Result result =
      host.run("run p.toml --cycles 5 --trace - --library " SLOW_BLOCK_LIBRARY);
  std::smatch counts;
  ASSERT_TRUE(std::regex_search(
      result.err, counts, std::regex("5 scans of 20ms, 5 overruns, ([0-9]+) deadlines skipped")))
      << result.err;
  EXPECT_GE(std::stoi(counts[1]), 10);
  EXPECT_EQ(std::ranges::count(result.out, '\n'), 6) << result.out;
}

// A host that is not let run, in its sleep or in a scan: by the clock that a block saw, each
// deadline has one scan or is counted as skipped, and no row is missing.
TEST(Run, AccountsForEveryDeadline) {
  Host host(
      "[program]\nscan = \"50ms\"\n[signals]\nOne = { value = 1 }\n"
      "[[block]]\nname = \"Start\"\ntype = \"Clock\"\n"
      "[[block]]\nname = \"Slow\"\ntype = \"PID\"\nin = { Enable = 5 }\n"
      "[[block]]\nname = \"End\"\ntype = \"Clock\"\n"
      "[outputs]\nOne = { from = \"One\", file = \"one\" }\n"
      "Count = { from = \"Slow.Q\", file = \"count\" }\n"
      "[trace]\nrecord = [\"Slow.Q\", \"Start.Ms\", \"End.Ms\"]\n"
      "[types.Clock]\nlibrary = \"" SLOW_BLOCK_LIBRARY "\"\noutputs = [\"Ms\"]\n");
  host.start("run p.toml --for 3s --trace t.csv --library " SLOW_BLOCK_LIBRARY);
  EXPECT_TRUE(host.eventually("one", "1\n"));
  for (int i = 0; i < 10; ++i) {
    usleep(93000);
    host.send(SIGSTOP);
    usleep(113000);
    host.send(SIGCONT);
  }
  const Host::Result ended = host.stop(0);
  const double end = static_cast<double>(scanhost::monotonic_ns()) / 1e6;
  long scans = 0, overruns = 0, skipped = 0;
  ASSERT_EQ(std::sscanf(ended.out.c_str(), "p: %ld scans of 50ms, %ld overruns, %ld deadlines",
                        &scans, &overruns, &skipped),
            3)
      << ended.out << ended.err;

  std::istringstream trace(host.read("t.csv"));
  std::string line;
  std::getline(trace, line);
  std::vector<double> starts, ends;
  double origin = end;  // of the deadlines, a little before: no scan begins before its own
  while (std::getline(trace, line)) {
    double count = 0, start = 0, scanned = 0;
    std::sscanf(line.c_str(), "%*[^,],%lf,%lf,%lf", &count, &start, &scanned);
    origin = std::min(origin, start - 50.0 * static_cast<double>(starts.size()) - 1.0);
    starts.push_back(start);
    ends.push_back(scanned);
    EXPECT_EQ(count, static_cast<double>(starts.size()));
  }
  ASSERT_EQ(static_cast<long>(starts.size()), scans);
  EXPECT_EQ(host.read("count"), std::to_string(scans) + "\n");
  const auto index = [&](double time) { return static_cast<long>((time - origin) / 50.0); };
  const long last = index(starts.back());
  long gaps = 0, unclear = 0;
  for (std::size_t i = 1; i < starts.size(); ++i) {
    const long step = index(starts[i]) - index(starts[i - 1]);
    EXPECT_GE(step, 1) << "caught up, row " << i;
    gaps += step > 1;
    // Woken late just at a deadline: the scan may have been taken for that of the one before.
    unclear +=
        index(starts[i]) > index(ends[i - 1]) + 1 && index(starts[i] - 3.0) < index(starts[i]);
  }
  EXPECT_GE(gaps, 5);
  const long deadlines = scans + skipped;
  EXPECT_GE(deadlines, index(ends.back() - 1.0) + 1);
  EXPECT_LE(deadlines, index(end) + 1);
  EXPECT_GE(deadlines, 60);  // --for counts the skipped ones
  EXPECT_LT(index(starts.end()[-2]), 59);
  EXPECT_LE(std::abs(overruns - gaps - (deadlines > last + 1)), unclear);
}

TEST(Run, ReportsAnOutputOnceAndTriesItAgain) {
  std::string program = kFollower;
  program.replace(program.find("out/valve"), 9, "blocked");
  Host host(program);
  host.write("level", "5");
  std::filesystem::create_directory(host.directory() / "blocked");
  host.start("run p.toml");
  EXPECT_TRUE(host.eventually("loop", "-1\n"));
  std::filesystem::remove(host.directory() / "blocked");
  EXPECT_TRUE(host.eventually("blocked", "5\n"));
  const std::string errors = host.stop(SIGTERM).err;
  EXPECT_EQ(errors,
            "output Valve: blocked: Is a directory; tried again at every scan\n"
            "output Loop: Hours.Q: the value is not finite; the last value stays\n"
            "output Loop: Hours.Q: the value is finite again\n"
            "output Valve: blocked: is written again\n");
}

TEST(Scan, AllocatesNothingAfterTheFirst) {
  Host host(kFollower);
  host.write("level", "5");
  scanhost::Program program = scanhost::read_program((host.directory() / "p.toml").string());
  scanhost::load_functions(program, SCANBLOCKS_LIBRARY);
  const std::string directory = host.directory().string();
  scanhost::Scan scan(program, {.state_dir = directory, .trace = directory + "/t.csv"});
  const auto step = [&scan](int i) {
    const scanhost::Duration elapsed = i * std::chrono::milliseconds(20);
    scan.step({.now = scanhost::Time(elapsed), .elapsed = elapsed});
  };
  step(0);
  for (int i = 1; i < 100; ++i) {
    if (i == 30) std::filesystem::remove(host.directory() / "level");
    if (i == 60) host.write("level", "1e5");
    const std::size_t outside = allocations;
    step(i);
    EXPECT_EQ(allocations, outside) << i;
  }
}
