// What 1,000 calls leave to the storage: pages dirtied by this process, and what reaches the
// device.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "bench/bench.h"
#include "bench/keepers.h"
#include "exports/catalogue.h"

namespace {

constexpr int kCalls = 1000;
constexpr auto kPeriod = std::chrono::milliseconds(10);

// Bytes of pages that this process has made dirty.
double dirtied() {
  std::ifstream stream("/proc/self/io");
  std::string name;
  for (double value = 0; stream >> name >> value;)
    if (name == "write_bytes:") return value;
  return 0;
}

// Bytes that the device has written, for whomever, once all is written back.
double written(const std::filesystem::path& directory) {
  const int file = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  syncfs(file);
  struct stat status {};
  fstat(file, &status);
  close(file);
  std::ifstream stream("/sys/dev/block/" + std::to_string(major(status.st_dev)) + ":" +
                       std::to_string(minor(status.st_dev)) + "/stat");
  double sectors = 0;  // the seventh figure
  for (int i = 0; i < 7; ++i) stream >> sectors;
  return sectors * 512;
}

// One iteration is 1,000 calls at a scan of 10 ms. Counters: bytes per 1,000 calls.
void wear(benchmark::State& state, const Place& place, const std::function<void(int)>& run) {
  for (auto _ : state) {
    const double written_before = written(place.directory);
    const double dirtied_before = dirtied();  // not in between: writing back dirties, too
    auto next = std::chrono::steady_clock::now();
    for (int i = 0; i < kCalls; ++i) {
      run(1);
      std::this_thread::sleep_until(next += kPeriod);
    }
    state.counters["dirtied"] = dirtied() - dirtied_before;
    state.counters["device"] = written(place.directory) - written_before;
  }
}

}  // namespace

void register_wear(const Place& place) {
  if (place.file_system == "tmpfs") return;  // no device
  const auto add = [&](const std::string& name, auto&& function) {
    benchmark::RegisterBenchmark(("wear/" + place.file_system + "/" + name).c_str(), function)
        ->Iterations(1);
  };
  const auto records = [place] {
    return Instance(*scanblocks::find_block("PID"), place.directory, "wear").bytes();
  };
  add("nothing", [place](benchmark::State& state) { wear(state, place, [](int) {}); });
  add("block", [place](benchmark::State& state) {
    Instance instance(*scanblocks::find_block("PID"), place.directory, "wear");
    wear(state, place, [&](int count) { instance.call(count); });
  });
  add("sqlite", [place, records](benchmark::State& state) {
    Database database(place.directory / "wear.sqlite", records());
    wear(state, place, [&](int count) { database.call(count); });
  });
  add("rewrite", [place, records](benchmark::State& state) {
    Rewrite rewrite(place.directory / "wear_rewrite.dat", records());
    wear(state, place, [&](int count) { rewrite.call(count); });
  });
}
