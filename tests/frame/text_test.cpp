// Texts of numbers, most of them against the C library's. SCANBLOCKS_ROUNDS is the number of random
// rounds, of six numbers each.
#include "frame/text.h"

#include <gtest/gtest.h>
#include <locale.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

using namespace scanblocks;

namespace {

// Reads a text, a field that it may fill to the end, as the C library does.
void parse(const std::string& text) {
  char field[kTextSize] = {};
  memcpy(field, text.data(), std::min(text.size(), sizeof field));
  const double expected = atof(text.c_str());
  const double value = parse_fixed(field);
  ASSERT_TRUE(std::signbit(value) == std::signbit(expected) &&
              (value == expected || (std::isnan(value) && std::isnan(expected))))
      << text << " is read as " << value;
}

// Writes a number and reads it back.
void format(double number) {
  char text[kTextSize] = {}, expected[400];
  snprintf(expected, sizeof expected, "%f", number);
  expected[kTextSize - 1] = '\0';
  ASSERT_EQ(std::string(text, format_fixed(number, text)), expected);
  parse(text);
}

TEST(Text, NumbersAgreeWithTheCLibrary) {
  // Powers of two and of ten with their neighbours.
  for (int exponent = -1074; exponent <= 1023; ++exponent)
    for (const double base : {std::ldexp(1.0, exponent), std::pow(10.0, exponent % 300)})
      for (const double number : {base, std::nextafter(base, 0.0), std::nextafter(base, HUGE_VAL)})
        for (const double either : {number, -number}) format(either);
  for (const double number : {0.0, HUGE_VAL, 5e-7, 5.000001e-7, 0.0000015, 0.9999994999, 0.9999995,
                              9007199254740993.0, 0x1p64 + 2048, 1.7976931348623157e308})
    for (const double either : {number, -number}) format(either);
  format(std::bit_cast<double>(0x7FF8000000000000));
  format(std::bit_cast<double>(0xFFF8000000000000));

  const char* rounds = getenv("SCANBLOCKS_ROUNDS");
  std::mt19937_64 random(1);
  for (long i = rounds != nullptr ? atol(rounds) : 20000; i > 0 && !HasFailure(); --i) {
    const std::uint64_t bits = random();
    const double any = std::bit_cast<double>(bits);
    if (!std::isnan(any)) format(any);
    // Usual sizes, down to what is stored as 0.
    format(std::ldexp(static_cast<double>(random() >> 11), -static_cast<int>(bits % 90)));
    // An odd multiple of 2^-7 lies exactly halfway between two texts.
    const double halfway = static_cast<double>((random() >> (14 + bits % 50)) | 1) * 0x1p-7;
    format(halfway);
    format(std::nextafter(halfway, 0.0));
    // A number with six decimals that halves the last one, as near as a double comes to it.
    format((static_cast<double>(random() >> (30 + bits % 30)) + 0.5) / 1e6);
    // Any number of digits before and behind the point.
    parse(std::to_string(random() >> (random() % 64)) + '.' +
          std::string(static_cast<std::size_t>(random() % 9), '0') +
          std::to_string(random() >> (24 + random() % 40)));
  }
}

TEST(Text, OddTextsReadAsTheCLibraryReadsThem) {
  for (const char* text : {"",       "abc",       "-",     ".",         "- 5", "--5",  "1,5", "1",
                           "-0",     "-0.000000", "+3.25", "1.",        ".5",  "-.5x", "1e",  "1e3",
                           "1e-400", "0x1p4",     "inf",   "-INFINITY", "nan", "-nan"})
    parse(text);
  for (const char* text :
       {" \t\n\v\f\r12.5", "12.500000 rest", "9007199254.740993", "9007199254740993",
        "9007199254.740994", "999999999999999.5", "9007199254740.99250000", "123456789.123456789",
        "0.1234567891", "99999999999999999999.000000"})
    parse(text);
  parse("179769313486231570000000000000000000000000000000000000000000000");
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
  char text[kTextSize];
  EXPECT_EQ(std::string(text, format_fixed(1.5, text)), "1.500000");
  EXPECT_EQ(parse_fixed("1.5"), 1.5);
  EXPECT_EQ(parse_fixed("1.5e0"), 1.5);
  setlocale(LC_ALL, "C");
}

}  // namespace
