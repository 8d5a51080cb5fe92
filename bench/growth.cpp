// How the cost of a call grows with the number of instances in one directory.
#include "bench/bench.h"
#include "bench/keepers.h"
#include "exports/catalogue.h"

namespace {

constexpr int kScan = 10000;

// Counters: the cost of a call among 1, 100 and 10,000 instances that are called in turn, and of
// the bare system calls on 10,000 files. A batch of the largest is one scan.
void grow(benchmark::State& state, const Place& place) {
  const scanblocks::BlockInfo& pid = *scanblocks::find_block("PID");
  const std::filesystem::path root = place.directory / "growth";
  std::vector<std::vector<Instance>> groups;
  std::vector<Contender> contenders;
  for (const int count : {1, 100, kScan}) {
    const std::string name = std::to_string(count);
    std::filesystem::create_directories(root / name);
    std::vector<Instance> group;
    for (int i = 0; i < count; ++i) group.emplace_back(pid, root / name, std::to_string(i));
    groups.push_back(std::move(group));
  }
  for (auto& group : groups)
    contenders.push_back({"instances" + std::to_string(group.size()), kScan, [&group](int count) {
                            for (int i = 0; i < count; ++i)
                              group[static_cast<std::size_t>(i) % group.size()].call(1);
                          }});
  std::vector<Bare> files;
  std::filesystem::create_directories(root / "bare");
  for (int i = 0; i < kScan; ++i)
    files.emplace_back(root / "bare" / ("PID_Bench_" + std::to_string(i) + ".dat"),
                       groups[0][0].bytes());
  contenders.push_back({"bare10000", kScan, [&files](int count) {
                          for (int i = 0; i < count; ++i)
                            files[static_cast<std::size_t>(i)].call(1);
                        }});
  race(state, contenders);
  std::filesystem::remove_all(root);
}

}  // namespace

void register_growth(const Place& place) {
  benchmark::RegisterBenchmark(("growth/" + place.file_system).c_str(),
                               [place](benchmark::State& state) { grow(state, place); })
      ->Iterations(50)
      ->UseManualTime();
}
