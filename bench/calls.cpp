// The call of every block: beside the bare system calls, and beside what people use instead.
#include <cstdlib>

#include "bench/bench.h"
#include "bench/keepers.h"
#include "exports/catalogue.h"

namespace {

using scanblocks::BlockInfo;
constexpr int kBatch = 100;

// Counters: block, bare.
void beside_bare(benchmark::State& state, const BlockInfo& block, const Place& place,
                 bool without_zone) {
  if (without_zone) unsetenv("TZ");
  Instance instance(block, place.directory, "a");
  Bare bare(place.directory / (std::string(block.name) + "_Bench_b.dat"), instance.bytes(),
            without_zone);
  race(state, {{"block", kBatch, [&](int count) { instance.call(count); }},
               {"bare", kBatch, [&](int count) { bare.call(count); }}});
  setenv("TZ", "UTC", 1);
}

// Counters: block, sqlite, rewrite.
void beside_others(benchmark::State& state, const BlockInfo& block, const Place& place) {
  Instance instance(block, place.directory, "a");
  Database database(place.directory / "state.sqlite", instance.bytes());
  Rewrite rewrite(place.directory / (std::string(block.name) + "_Bench_w.dat"), instance.bytes());
  race(state, {{"block", 20, [&](int count) { instance.call(count); }},
               {"sqlite", 20, [&](int count) { database.call(count); }},
               {"rewrite", 5, [&](int count) { rewrite.call(count); }}});
}

}  // namespace

void register_stateless_calls() {
  for (const BlockInfo* block : scanblocks::catalogue_of_blocks()) {
    if (!block->keys.empty()) continue;
    benchmark::RegisterBenchmark(
        (std::string("stateless/") + block->name).c_str(),
        [block](benchmark::State& state) {
          Instance instance(*block, "", "a");
          race(state, {{"block", 10000, [&](int count) { instance.call(count); }}});
        })
        ->Iterations(300)
        ->UseManualTime();
  }
}

void register_calls(const Place& place) {
  for (const BlockInfo* block : scanblocks::catalogue_of_blocks()) {
    if (block->keys.empty()) continue;
    const std::string name = "/" + place.file_system + "/" + block->name;
    const auto add = [&](const std::string& full_name, int rounds, auto&& function) {
      benchmark::RegisterBenchmark(full_name.c_str(), function)
          ->Iterations(rounds)
          ->UseManualTime();
    };
    add("bare" + name, 1000,
        [block, place](benchmark::State& state) { beside_bare(state, *block, place, false); });
    if (std::string_view(block->family) == "schedules")
      add("bare-without-TZ" + name, 1000,
          [block, place](benchmark::State& state) { beside_bare(state, *block, place, true); });
    add("others" + name, 200,
        [block, place](benchmark::State& state) { beside_others(state, *block, place); });
  }
}
