// The figures: percentiles against sorted times, and what the host prints of them.
#include "host/figures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/support/scanhost.h"

TEST(Figures, PercentilesAreAtMostASixteenthTooHigh) {
  scanhost::Histogram times;
  EXPECT_EQ(times.percentile(0.5), 0u);
  std::mt19937_64 random(1);
  std::vector<std::uint64_t> sorted;
  for (int i = 0; i < 10000; ++i) sorted.push_back((random() >> 24) >> (random() % 40));
  for (const std::uint64_t time : sorted) times.add(time);
  std::ranges::sort(sorted);
  for (const double share : {0.001, 0.25, 0.5, 0.99, 0.999, 1.0}) {
    const auto exact = static_cast<double>(sorted[static_cast<std::size_t>(share * 10000) - 1]);
    EXPECT_GE(static_cast<double>(times.percentile(share)), exact) << share;
    EXPECT_LE(static_cast<double>(times.percentile(share)), exact * 1.0625) << share;
  }
  times.add(std::uint64_t{1} << 60);
  EXPECT_EQ(times.max(), std::uint64_t{1} << 60);
}

TEST(Figures, ArePrintedByScanTypeAndInstance) {
  Host host(
      "[program]\nscan = \"10ms\"\ngroup = \"G\"\n[[block]]\nname = \"A\"\ntype = \"PID\"\n"
      "[[block]]\nname = \"B\"\ntype = \"PID\"\n");
  const Host::Result run = host.run("run p.toml --cycles 7 --stats");
  for (const char* part : {"scan                                        7 ",
                           "lateness of the start                       7 ",
                           "PID                                        14 ",
                           "  PID G/B                                   7 ", " overruns, "})
    EXPECT_TRUE(has(run.out, part));
  EXPECT_EQ(host.run("simulate p.toml --cycles 7 --trace t --stats-json s.json").status, 0);
  EXPECT_TRUE(has(host.read("s.json"), "\"PID\": {\n      \"count\": 14,"));
  EXPECT_EQ(host.run("simulate p.toml --cycles 1 --trace t --stats-json /dev/full").status, 1);
}
