// Compares the texts of numbers with the C library's, on as many random numbers as asked for.
// usage: text_agreement [COUNT [SEED]]      ends with 0 if all agree
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

#include "frame/text.h"

namespace {

std::uint64_t failures = 0;

void fail(const char* what, double number, const char* ours, const char* theirs) {
  std::printf("%s of %a: '%s', the C library has '%s'\n", what, number, ours, theirs);
  if (++failures >= 20) std::exit(1);
}

bool same(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

// The text of a number, and the number that both read from that text.
void compare(double number) {
  char ours[scanblocks::kTextSize] = {};
  char theirs[400];
  scanblocks::format_fixed(number, ours);
  std::snprintf(theirs, sizeof theirs, "%f", number);
  theirs[scanblocks::kTextSize - 1] = '\0';
  if (std::strcmp(ours, theirs) != 0) fail("text", number, ours, theirs);
  const double read = scanblocks::parse_fixed(ours);
  if (!same(read, std::strtod(theirs, nullptr))) fail("number", read, ours, theirs);
}

// A text with any number of digits before and behind the point.
void compare_parsed(std::mt19937_64& random) {
  char text[scanblocks::kTextSize] = {};
  std::snprintf(text, sizeof text, "%llu.%0*llu",
                static_cast<unsigned long long>(random() >> (random() % 64)),
                static_cast<int>(1 + random() % 12),
                static_cast<unsigned long long>(random() >> (24 + random() % 40)));
  const double read = scanblocks::parse_fixed(text);
  if (!same(read, std::strtod(text, nullptr))) fail("number", read, text, text);
}

}  // namespace

int main(int count_of_arguments, char** arguments) {
  const std::uint64_t count =
      count_of_arguments > 1 ? std::strtoull(arguments[1], nullptr, 10) : 1000000;
  std::mt19937_64 random(count_of_arguments > 2 ? std::strtoull(arguments[2], nullptr, 10) : 1);

  // Edges: every power of two and of ten with both neighbours.
  for (int exponent = -1074; exponent <= 1023; ++exponent)
    for (const double base : {std::ldexp(1.0, exponent), std::pow(10.0, exponent % 300)})
      for (const double number : {base, std::nextafter(base, 0.0), std::nextafter(base, HUGE_VAL)})
        for (const double either : {number, -number}) compare(either);
  for (const double number : {0.0, -0.0, HUGE_VAL, -HUGE_VAL}) compare(number);

  for (std::uint64_t i = 0; i < count; ++i) {
    const std::uint64_t bits = random();
    const double any = std::bit_cast<double>(bits);
    if (any == any) compare(any);
    // Usual sizes, down to what is stored as 0.
    compare(std::ldexp(static_cast<double>(random() >> 11), -static_cast<int>(bits % 90)));
    // An odd multiple of 2^-7 lies exactly halfway between two texts.
    const double halfway = static_cast<double>((random() >> (14 + bits % 50)) | 1) * 0x1p-7;
    compare(halfway);
    compare(std::nextafter(halfway, 0.0));
    // A number with six decimals that halves the last one, as near as a double comes to it.
    compare((static_cast<double>(random() >> (30 + bits % 30)) + 0.5) / 1e6);
    compare_parsed(random);
  }
  std::printf("%llu random rounds, 6 numbers each, %llu differences\n",
              static_cast<unsigned long long>(count), static_cast<unsigned long long>(failures));
  return failures == 0 ? 0 : 1;
}
