#include "host/figures.h"

#include <algorithm>
#include <bit>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <map>
#include <nlohmann/json.hpp>

namespace scanhost {
namespace {

using Json = nlohmann::ordered_json;

// The instances of each type together.
std::map<std::string, Histogram> by_type(const Figures& figures, const Program& program) {
  std::map<std::string, Histogram> types;
  for (std::size_t i = 0; i < figures.blocks.size(); ++i)
    types[program.blocks[i].type->name].add(figures.blocks[i]);
  return types;
}

std::string instance_name(const BlockSpec& block) {
  return block.group.empty() ? block.name : block.group + "/" + block.name;
}

std::string row(const std::string& what, const Histogram& times) {
  char text[256];
  const auto us = [](std::uint64_t ns) { return static_cast<double>(ns) / 1e3; };
  std::snprintf(text, sizeof text, "%-32.80s %12" PRIu64 " %11.1f %11.1f %11.1f %11.1f %11.1f\n",
                what.c_str(), times.count(), times.mean() / 1e3, us(times.percentile(0.5)),
                us(times.percentile(0.99)), us(times.percentile(0.999)), us(times.max()));
  return text;
}

Json to_json(const Histogram& times) {
  return {{"count", times.count()},
          {"mean_ns", times.mean()},
          {"p50_ns", times.percentile(0.5)},
          {"p99_ns", times.percentile(0.99)},
          {"p99.9_ns", times.percentile(0.999)},
          {"max_ns", times.max()}};
}

}  // namespace

std::size_t Histogram::bin(std::uint64_t ns) {
  constexpr std::uint64_t kEnd = std::uint64_t{1} << kOctaves;
  ns = std::min(ns, kEnd - 1);
  if (ns < (1u << kFine)) return static_cast<std::size_t>(ns);
  const unsigned shift = static_cast<unsigned>(std::bit_width(ns)) - kFine - 1;
  return (static_cast<std::size_t>(shift) << kFine) + static_cast<std::size_t>(ns >> shift);
}

std::uint64_t Histogram::top(std::size_t bin) {
  if (bin < (2u << kFine)) return bin;
  const std::size_t shift = (bin >> kFine) - 1;
  const std::uint64_t mantissa = bin - (shift << kFine);
  return ((mantissa + 1) << shift) - 1;
}

void Histogram::add(std::uint64_t ns) {
  std::uint32_t& bin_count = bins_[bin(ns)];
  if (bin_count < UINT32_MAX) ++bin_count;
  ++count_;
  sum_ += ns;
  max_ = std::max(max_, ns);
}

void Histogram::add(const Histogram& other) {
  for (std::size_t i = 0; i < bins_.size(); ++i)
    bins_[i] += std::min(other.bins_[i], UINT32_MAX - bins_[i]);
  count_ += other.count_;
  sum_ += other.sum_;
  max_ = std::max(max_, other.max_);
}

double Histogram::mean() const {
  return count_ == 0 ? 0.0 : static_cast<double>(sum_) / static_cast<double>(count_);
}

std::uint64_t Histogram::percentile(double share) const {
  const auto rank = static_cast<std::uint64_t>(std::ceil(share * static_cast<double>(count_)));
  std::uint64_t below = 0;
  for (std::size_t i = 0; i < bins_.size(); ++i) {
    below += bins_[i];
    if (below >= rank && below > 0) return std::min(top(i), max_);
  }
  return max_;
}

std::uint64_t monotonic_ns() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * 1000000000u +
         static_cast<std::uint64_t>(now.tv_nsec);
}

std::string figures_table(const Figures& figures, const Program& program) {
  char text[160];
  std::snprintf(text, sizeof text, "%-32s %12s %11s %11s %11s %11s %11s\n", "times in us", "count",
                "mean", "p50", "p99", "p99.9", "max");
  std::string table = text + row("scan", figures.scan);
  if (figures.jitter.count() > 0) table += row("lateness of the start", figures.jitter);
  for (const auto& [type, times] : by_type(figures, program)) table += row(type, times);
  for (std::size_t i = 0; i < figures.blocks.size(); ++i)
    table += row("  " + program.blocks[i].type->name + " " + instance_name(program.blocks[i]),
                 figures.blocks[i]);
  std::snprintf(text, sizeof text, "%" PRIu64 " overruns, %" PRIu64 " deadlines skipped\n",
                figures.overruns, figures.skipped);
  return table + text;
}

std::string figures_json(const Figures& figures, const Program& program) {
  Json types = Json::object();
  for (const auto& [type, times] : by_type(figures, program)) types[type] = to_json(times);
  Json blocks = Json::array();
  for (std::size_t i = 0; i < figures.blocks.size(); ++i) {
    const BlockSpec& block = program.blocks[i];
    Json times = {{"type", block.type->name}, {"group", block.group}, {"name", block.name}};
    times.update(to_json(figures.blocks[i]));
    blocks.push_back(std::move(times));
  }
  const Json all = {{"program", program.name},
                    {"period_ns", std::chrono::nanoseconds(program.scan).count()},
                    {"overruns", figures.overruns},
                    {"skipped", figures.skipped},
                    {"scan", to_json(figures.scan)},
                    {"jitter", to_json(figures.jitter)},
                    {"types", types},
                    {"blocks", blocks}};
  return all.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace scanhost
