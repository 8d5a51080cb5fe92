// Durations, times and numbers as texts.
#include <cmath>
#include <ctime>

#include "host/number.h"
#include "host/time.h"
#include "tests/support/rig.h"

using namespace scanhost;

TEST(HostTexts, Durations) {
  const std::pair<const char*, std::int64_t> good[] = {{"100ms", 100000},
                                                       {"1s", 1000000},
                                                       {"10m", 600000000},
                                                       {"10min", 600000000},
                                                       {"1h", 3600000000},
                                                       {"1d", 86400000000},
                                                       {"12m30s", 750000000},
                                                       {"1.5s", 1500000},
                                                       {"250us", 250},
                                                       {"1d1h1m1s1ms1us", 90061001001},
                                                       {"0s", 0}};
  for (const auto& [text, length] : good) EXPECT_EQ(parse_duration(text), Duration(length)) << text;
  for (const char* bad :
       {"", "1", "s", "-1s", "1 s", "1s30m", "1s1s", "1x", "nans", "infs", "1e9d", "0x1s", "1s "})
    EXPECT_FALSE(parse_duration(bad)) << bad;
  for (const char* text : {"0s", "50ms", "1m30s", "1d2h", "1s1us"})
    EXPECT_EQ(format_duration(*parse_duration(text)), text);
}

TEST(HostTexts, Times) {
  const TimeZone zone("Europe/Berlin");
  tzset();
  const std::pair<const char*, const char*> good[] = {
      {"2024-01-31T12:00:00.250Z", "2024-01-31T13:00:00.250+01:00"},
      {"2024-01-31 12:00", "2024-01-31T12:00:00.000+01:00"},
      {"2024-07-01", "2024-07-01T00:00:00.000+02:00"},
      {"2024-01-31T12:00:00-0330", "2024-01-31T16:30:00.000+01:00"},
      {"2024-01-31T12:00:00+02", "2024-01-31T11:00:00.000+01:00"},
      {"2024-03-31T01:59:59.9999Z", "2024-03-31T03:59:59.999+02:00"},
      {"1969-12-31T23:59:59.5Z", "1970-01-01T00:59:59.500+01:00"}};
  for (const auto& [text, shown] : good) {
    char buffer[kTimeSize];
    const std::optional<Time> time = parse_time(text);
    ASSERT_TRUE(time) << text;
    EXPECT_EQ(std::string(buffer, format_time(*time, buffer)), shown);
  }
  for (const char* bad : {"", "2024", "2024-02-30", "2024-01-31T24:00", "2024-01-31T12", "noon",
                          "2024-01-31T12:00:00X", "2024-01-31T12:00:00+1", "2024-01-31T12:00:61"})
    EXPECT_FALSE(parse_time(bad)) << bad;
}

TEST(HostTexts, Numbers) {
  const std::pair<const char*, double> found[] = {{"MemFree:   1234 kB", 1234},
                                                  {"-3.5\n", -3.5},
                                                  {"t=.5C", .5},
                                                  {"0x1F\n", 31},
                                                  {"1e3 2", 1000},
                                                  {"- 7", 7},
                                                  {"12abc", 12}};
  for (const auto& [text, value] : found) EXPECT_EQ(find_number(text), value) << text;
  for (const char* none : {"", "\n", "nan", "on", "-"}) EXPECT_FALSE(find_number(none)) << none;
  EXPECT_EQ(parse_number(" +2.5\r"), 2.5);
  EXPECT_FALSE(parse_number("2.5 C"));

  const std::pair<double, const char*> shown[] = {
      {1000000, "1000000"},   {0.1 + 0.2, "0.30000000000000004"},
      {-0.00001, "-0.00001"}, {1e-6, "1e-06"},
      {1e21, "1e+21"},        {-NAN, "nan"},
      {-INFINITY, "-inf"},    {-123456789.123456789, "-123456789.12345679"}};
  for (const auto& [value, text] : shown) {
    char buffer[kNumberSize];
    EXPECT_EQ(std::string(buffer, format_number(value, buffer)), text);
  }
}
