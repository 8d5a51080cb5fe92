// Different instances called from several threads at the same time.
#include "bench/bench.h"
#include "bench/keepers.h"
#include "exports/catalogue.h"

namespace {

void call_block(benchmark::State& state, const Place& place) {
  Instance instance(*scanblocks::find_block("PID"), place.directory,
                    "thread" + std::to_string(state.thread_index()));
  for (auto _ : state) instance.call(1);
  state.SetItemsProcessed(state.iterations());
}

void call_bare(benchmark::State& state, const Place& place) {
  Bare bare(place.directory / ("bare" + std::to_string(state.thread_index()) + ".dat"),
            std::string(480, 'x'));
  for (auto _ : state) bare.call(1);
  state.SetItemsProcessed(state.iterations());
}

}  // namespace

void register_threads(const Place& place) {
  for (int threads = 1; threads <= 4; ++threads)
    for (const auto& [name, function] : {std::pair{"block", &call_block}, {"bare", &call_bare}})
      benchmark::RegisterBenchmark(
          ("threads/" + place.file_system + "/" + name).c_str(),
          [place, function = function](benchmark::State& state) { function(state, place); })
          ->Threads(threads)
          ->MinTime(0.5)
          ->UseRealTime();
}
