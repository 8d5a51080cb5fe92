// usage: scanblocks_bench [flags of Google Benchmark] DIRECTORY...
// Keeps its states in a directory of its own in each of the given ones, and removes it.
#include <sys/vfs.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <numeric>

#include "bench/bench.h"

namespace {

std::string file_system_of(const std::filesystem::path& directory) {
  struct statfs status {};
  if (statfs(directory.c_str(), &status) != 0) return "";
  switch (static_cast<unsigned long>(status.f_type)) {
    case 0x01021994:
      return "tmpfs";
    case 0xEF53:
      return "ext4";
    case 0x58465342:
      return "xfs";
    case 0x9123683E:
      return "btrfs";
    case 0xF2F52010:
      return "f2fs";
    case 0x794C7630:
      return "overlayfs";
    default:
      return "other";
  }
}

double median(std::vector<double>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

void race(benchmark::State& state, const std::vector<Contender>& contenders) {
  using Clock = std::chrono::steady_clock;
  using Nanoseconds = std::chrono::duration<double, std::nano>;
  std::vector<std::vector<double>> times(contenders.size());
  for (const Contender& contender : contenders) contender.run(contender.batch);  // warm-up
  for (auto _ : state) {
    for (std::size_t i = 0; i < contenders.size(); ++i) {
      const auto started = Clock::now();
      contenders[i].run(contenders[i].batch);
      const Nanoseconds passed = Clock::now() - started;
      times[i].push_back(passed.count() / contenders[i].batch);
    }
    state.SetIterationTime(times[0].back() * 1e-9);
  }
  for (std::size_t i = 0; i < contenders.size(); ++i) {
    const double sum = std::accumulate(times[i].begin(), times[i].end(), 0.0);
    state.counters[contenders[i].name + "-mean"] = sum / static_cast<double>(times[i].size());
    state.counters[contenders[i].name] = median(times[i]);
  }
}

int main(int count, char** arguments) {
  setenv("TZ", "UTC", 1);  // as a controller has it; a race without TZ has its own name
  benchmark::Initialize(&count, arguments);
  if (count < 2) {
    std::fprintf(stderr, "usage: scanblocks_bench [flags] DIRECTORY...\n");
    return 2;
  }
  register_stateless_calls();
  std::vector<Place> places;
  for (int i = 1; i < count; ++i) {
    std::string directory = std::string(arguments[i]) + "/scanblocks-bench-XXXXXX";
    if (mkdtemp(directory.data()) == nullptr) {
      std::fprintf(stderr, "scanblocks_bench: cannot make a directory in %s\n", arguments[i]);
      return 1;
    }
    places.push_back({file_system_of(directory), directory});
    register_calls(places.back());
    register_growth(places.back());
    register_threads(places.back());
    register_wear(places.back());
  }
  benchmark::RunSpecifiedBenchmarks();
  for (const Place& place : places) std::filesystem::remove_all(place.directory);
}
