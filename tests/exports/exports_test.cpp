// What the built library exports and needs.
#include "exports/scanblocks.h"

#include <cstdio>
#include <fstream>
#include <regex>
#include <set>
#include <string>

#include "tests/support/rig.h"

// Each listed name is declared, a block with the signature of blocks.
#define BLOCK_NAME(name) static_assert(std::is_same_v<decltype(&name), scanblocks_block>);
#define FUNCTION_NAME(name) static_assert(std::is_function_v<decltype(name)>);
#define DATA_NAME(name) static_assert(std::is_object_v<decltype(name)>);
#include "exports/names.def"

namespace {

std::set<std::string> output_of(const std::string& command, const std::regex& pattern) {
  std::set<std::string> found;
  FILE* pipe = popen(command.c_str(), "r");
  char line[512];
  while (fgets(line, sizeof line, pipe) != nullptr) {
    std::cmatch match;
    if (std::regex_search(line, match, pattern)) found.insert(match[1]);
  }
  EXPECT_EQ(pclose(pipe), 0) << command;
  return found;
}

std::set<std::string> listed_names() {
  std::set<std::string> names;
  std::ifstream list(SCANBLOCKS_NAMES);
  const std::regex pattern(R"(^[A-Z]+_NAME\((\w+)\))");
  for (std::string line; std::getline(list, line);) {
    std::smatch match;
    if (std::regex_search(line, match, pattern)) names.insert(match[1]);
  }
  return names;
}

TEST(Exports, AreTheListedNamesAndNoOther) {
  EXPECT_EQ(output_of("nm -D --defined-only " SCANBLOCKS_LIBRARY, std::regex(R"((\S+)\s*$)")),
            listed_names());
}

TEST(Exports, AreDeclaredWithTheirPins) {
  std::ifstream file(std::filesystem::path(SCANBLOCKS_NAMES).replace_filename("scanblocks.h"));
  const std::string header{std::istreambuf_iterator<char>(file), {}};
  for (const scanblocks::BlockInfo* block : scanblocks::catalogue_of_blocks()) {
    const std::regex declaration(
        "void " + std::string(block->name) +
        R"(\(const Pin\* inputs, Pin\* outputs\);\s*/\* (\d+) inputs?, (\d+) outputs? \*/)");
    std::smatch pins;
    ASSERT_TRUE(std::regex_search(header, pins, declaration)) << block->name;
    EXPECT_EQ(std::stoul(pins[1]), SCANBLOCKS_FIRST_VALUE + block->inputs.size()) << block->name;
    EXPECT_EQ(std::stoul(pins[2]), block->outputs.size()) << block->name;
  }
}

TEST(Exports, NeedTheCLibraryAlone) {
#ifdef SCANBLOCKS_SANITIZED
  GTEST_SKIP() << "the sanitizers bring libraries of their own";
#endif
  for (const std::string& needed :
       output_of("readelf -d " SCANBLOCKS_LIBRARY, std::regex(R"(NEEDED.*\[(.*)\])")))
    EXPECT_TRUE(needed == "libc.so.6" || needed == "ld-linux.so.3") << needed;
  EXPECT_EQ(output_of("readelf -d " SCANBLOCKS_LIBRARY, std::regex(R"(SONAME.*\[(.*)\])")),
            std::set<std::string>{"libscanblocks.so.1"});
}

TEST(Exports, DataObjectsAreZero) {
  const std::pair<const char*, std::size_t> objects[] = {
      {"ub2f", 4}, {"i2b", 2}, {"ui2f", 4}, {"ub2l", 4}, {"ul2us", 4}, {"ui2l", 4}, {"ui2d", 8}};
  for (const auto& [name, size] : objects) {
    const auto* bytes = static_cast<const char*>(exported(name));
    ASSERT_NE(bytes, nullptr) << name;
    EXPECT_EQ(std::string(bytes, size), std::string(size, '\0')) << name;
  }
}

TEST(Exports, ClockTruncatesToMilliseconds) {
  const auto milliseconds = reinterpret_cast<decltype(&zelgetTime)>(exported("zelgetTime"));
  const auto seconds = reinterpret_cast<decltype(&zelgetTimeSec)>(exported("zelgetTimeSec"));
  fake_clock.microseconds = 12999999;
  EXPECT_EQ(milliseconds(), 12999);
  EXPECT_EQ(seconds(), 12);
  fake_clock.microseconds = 1700000000123456;
  EXPECT_EQ(milliseconds(), 1700000000123);
}

}  // namespace
