#include "frame/text.h"

#include <gtest/gtest.h>
#include <locale.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

using namespace scanblocks;

namespace {

std::string formatted(double value) {
  char text[kTextSize];
  return {text, format_fixed(value, text)};
}

std::string by_c_library(double value) {
  char text[400];
  snprintf(text, sizeof text, "%f", value);
  return std::string(text).substr(0, 63);
}

TEST(Text, FixedAgreesWithTheCLibrary) {
  const double limits[] = {0.0,           -0.0,
                           5e-324,        4e-7,
                           5e-7,          5.000001e-7,
                           0.0000015,     0.0000025,
                           0.5,           0.9999994999,
                           0.9999995,     0.9999999,
                           1 - 0x1p-53,   9007199254740993.0,
                           0x1p63,        0x1p64,
                           0x1p64 + 2048, 1e22,
                           1e54,          9.99e54,
                           1e55,          1e56,
                           1e300,         1.7976931348623157e308,
                           HUGE_VAL};
  for (const double limit : limits)
    for (const double value : {limit, -limit}) EXPECT_EQ(formatted(value), by_c_library(value));
  EXPECT_EQ(formatted(std::bit_cast<double>(0x7FF8000000000000)), "nan");
  EXPECT_EQ(formatted(std::bit_cast<double>(0xFFF8000000000000)), "-nan");
}

TEST(Text, ParsedNumbersAgreeWithTheCLibrary) {
  const char* texts[] = {"",
                         "abc",
                         "-",
                         ".",
                         "1",
                         "-0",
                         "-0.000000",
                         " \t\n\v\f\r12.5",
                         "+3.25",
                         "1.",
                         ".5",
                         "-.5x",
                         "12.500000 rest",
                         "1e3",
                         "1e",
                         "1e-400",
                         "0x1p4",
                         "inf",
                         "-INFINITY",
                         "nan",
                         "-nan",
                         "1,5",
                         "9007199254.740993",
                         "9007199254740993",
                         "9007199254.740994",
                         "999999999999999.5",
                         "9007199254740.99250000",
                         "123456789.123456789",
                         "0.1234567891",
                         "- 5",
                         "--5",
                         "99999999999999999999.000000",
                         "179769313486231570000000000000000000000000000000000000000000000"};
  for (const char* text : texts) {
    char field[kTextSize] = {};
    memcpy(field, text, std::min(strlen(text), sizeof field));
    const double expected = atof(text);
    const double value = parse_fixed(field);
    EXPECT_EQ(std::signbit(value), std::signbit(expected)) << text;
    EXPECT_TRUE(value == expected || (std::isnan(value) && std::isnan(expected))) << text;
  }
}

TEST(Text, AFieldWithoutNulEndsAtItsSize) {
  char field[kTextSize + 1];
  memset(field, '1', sizeof field);
  EXPECT_EQ(parse_fixed(field), atof(std::string(kTextSize, '1').c_str()));
  memset(field, ' ', kTextSize);
  EXPECT_EQ(parse_int64(field), 0);
  EXPECT_EQ(parse_fixed(field), 0.0);
}

TEST(Text, IntegersSaturateAtTheWidthOfTheTarget) {
  EXPECT_EQ(parse_int32("2147483647"), 2147483647);
  EXPECT_EQ(parse_int32("2147483648"), 2147483647);
  EXPECT_EQ(parse_int32(" -2147483649"), -2147483647 - 1);
  EXPECT_EQ(parse_int32("+12abc"), 12);
  EXPECT_EQ(parse_int32("1.9"), 1);
  EXPECT_EQ(parse_int32("x"), 0);
  EXPECT_EQ(parse_int64("9223372036854775807"), INT64_MAX);
  EXPECT_EQ(parse_int64("9223372036854775808"), INT64_MAX);
  EXPECT_EQ(parse_int64("-9223372036854775808"), INT64_MIN);
  EXPECT_EQ(parse_int64("-99999999999999999999999"), INT64_MIN);
  char text[kTextSize] = {};
  format_signed(INT32_MIN, text);
  EXPECT_STREQ(text, "-2147483648");
  format_unsigned(UINT64_MAX, text);
  EXPECT_STREQ(text, "18446744073709551615");
}

TEST(Text, DoesNotDependOnTheLocale) {
  const char* const locale = setlocale(LC_ALL, "de_DE.UTF-8");
  if (locale == nullptr) GTEST_SKIP() << "the locale de_DE.UTF-8 is not installed";
  EXPECT_STREQ(localeconv()->decimal_point, ",");
  EXPECT_EQ(formatted(1.5), "1.500000");
  EXPECT_EQ(parse_fixed("1.5"), 1.5);
  EXPECT_EQ(parse_fixed("1.5e0"), 1.5);
  setlocale(LC_ALL, "C");
}

}  // namespace
