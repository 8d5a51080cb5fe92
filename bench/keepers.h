// Four ways to reread and rewrite the state of an instance: the block itself, the bare system
// calls on the same bytes, and two things that people use instead.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "bench/settings.h"

struct sqlite3;
struct sqlite3_stmt;

using BlockFunction = void (*)(const Pin*, Pin*);
BlockFunction function_of(const scanblocks::BlockInfo& block);

// An instance of a block whose file says that it has been at work for an hour.
class Instance {
 public:
  Instance(const scanblocks::BlockInfo& block, const std::filesystem::path& directory,
           const std::string& tag);
  void call(int count);
  const std::filesystem::path& file() const { return file_; }
  std::string bytes() const;

 private:
  BlockFunction function_;
  std::filesystem::path file_;
  unsigned calls_ = 0;
  std::vector<Pin> inputs_[2];  // of even and of odd calls
  std::vector<Pin> outputs_;
};

// open, read, pwrite, close.
class Bare {
 public:
  // With `stat_zone` also the question for the time zone that local time takes without TZ.
  Bare(std::filesystem::path file, const std::string& bytes, bool stat_zone = false);
  void call(int count);

 private:
  std::filesystem::path file_;
  std::size_t size_;
  bool stat_zone_;
};

// fopen "rb", fread, fclose; fopen "wb", fwrite of each record, fclose.
class Rewrite {
 public:
  Rewrite(std::filesystem::path file, const std::string& bytes);
  void call(int count);

 private:
  std::filesystem::path file_;
};

// SQLite with a write-ahead log and synchronous=NORMAL: the records as one blob in one row, read
// and updated by prepared statements in one transaction per call.
class Database {
 public:
  Database(std::filesystem::path file, const std::string& bytes);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  void call(int count);

 private:
  sqlite3_stmt* prepare(const char* text);
  void step(sqlite3_stmt* statement);

  sqlite3* database_ = nullptr;
  sqlite3_stmt* begin_ = nullptr;
  sqlite3_stmt* select_ = nullptr;
  sqlite3_stmt* update_ = nullptr;
  sqlite3_stmt* commit_ = nullptr;
};
