// What the topics of the benchmark share: where they run, and races between ways to do the same.
#pragma once

#include <benchmark/benchmark.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

// A directory to keep states in, with the name of its file system ("tmpfs", "ext4").
struct Place {
  std::string file_system;
  std::filesystem::path directory;
};

// One way to do the work: `run` does it so many times.
struct Contender {
  std::string name;
  int batch;
  std::function<void(int count)> run;
};

// Every iteration is a round in which each contender does one batch. Two counters per contender
// have its median and its mean ("NAME-mean") in nanoseconds per call. In one round all meet the
// same machine, so medians of one race compare well where those of two races do not; a mean has
// what comes seldom and takes long, such as the checkpoints of a database.
void race(benchmark::State& state, const std::vector<Contender>& contenders);

// One for each topic; all but the first want a place.
void register_stateless_calls();
void register_calls(const Place& place);
void register_growth(const Place& place);
void register_threads(const Place& place);
void register_wear(const Place& place);
