#include "bench/keepers.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include "frame/clock.h"
#include "frame/state_file.h"

using scanblocks::kRecordSize;

namespace {

constexpr std::size_t kBufferSize = 4096;

[[noreturn]] void fail(const std::string& what) {
  std::fprintf(stderr, "scanblocks_bench: %s\n", what.c_str());
  std::exit(1);
}

void write_file(const std::filesystem::path& file, const std::string& bytes) {
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  if (!(stream << bytes << std::flush)) fail("cannot write " + file.string());
}

// The first state: zeros, and time stamps that lie an hour back.
std::string worn_in(const scanblocks::BlockInfo& block) {
  std::string bytes;
  const std::int64_t seconds = zelgetTimeSec() - 3600;
  for (const scanblocks::Field& key : block.keys) {
    std::string value = "0";
    if (key.unit == scanblocks::kClockSec) value = std::to_string(seconds);
    if (key.unit == scanblocks::kClockMs)
      value = std::to_string(key.kind == scanblocks::Kind::kUnsigned
                                 ? static_cast<std::uint32_t>(seconds * 1000)
                                 : seconds * 1000);
    std::string record(kRecordSize, '\0');
    record.replace(0, std::strlen(key.name), key.name);
    record.replace(scanblocks::kKeySize, value.size(), value);
    bytes += record;
  }
  return bytes;
}

}  // namespace

BlockFunction function_of(const scanblocks::BlockInfo& block) {
  static void* const library = dlopen(SCANBLOCKS_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) fail(dlerror());
  void* const function = dlsym(library, block.name);
  if (function == nullptr) fail(dlerror());
  return reinterpret_cast<BlockFunction>(function);
}

Instance::Instance(const scanblocks::BlockInfo& block, const std::filesystem::path& directory,
                   const std::string& tag)
    : function_(function_of(block)),
      file_(directory / (std::string(block.name) + "_Bench_" + tag + ".dat")),
      outputs_(block.outputs.size()) {
  for (auto& pins : inputs_) {
    pins.resize(SCANBLOCKS_FIRST_VALUE + block.inputs.size());
    set_inputs(block, &pins == &inputs_[1], pins);
    std::snprintf(pins[SCANBLOCKS_STATE_DIR].Text, sizeof(Pin::Text), "%s", directory.c_str());
    std::snprintf(pins[SCANBLOCKS_GROUP_TAG].Text, sizeof(Pin::Text), "Bench");
    std::snprintf(pins[SCANBLOCKS_INSTANCE_TAG].Text, sizeof(Pin::Text), "%s", tag.c_str());
  }
  if (block.keys.empty()) return;
  write_file(file_, worn_in(block));
  call(2);
  if (bytes().size() != block.keys.size() * kRecordSize) fail("no state in " + file_.string());
}

void Instance::call(int count) {
  for (; count > 0; --count) function_(inputs_[calls_++ % 2].data(), outputs_.data());
}

std::string Instance::bytes() const {
  std::ifstream stream(file_, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

Bare::Bare(std::filesystem::path file, const std::string& bytes, bool stat_zone)
    : file_(std::move(file)), size_(bytes.size()), stat_zone_(stat_zone) {
  write_file(file_, bytes);
}

void Bare::call(int count) {
  const char* const path = file_.c_str();
  char bytes[kBufferSize];
  struct stat zone {};
  for (; count > 0; --count) {
    const int file = open(path, O_RDWR | O_CLOEXEC);
    if (read(file, bytes, sizeof bytes) != static_cast<ssize_t>(size_)) fail("short read");
    if (stat_zone_ && stat("/etc/localtime", &zone) != 0) zone = {};
    if (pwrite(file, bytes, size_, 0) != static_cast<ssize_t>(size_)) fail("short write");
    close(file);
  }
}

Rewrite::Rewrite(std::filesystem::path file, const std::string& bytes) : file_(std::move(file)) {
  write_file(file_, bytes);
}

void Rewrite::call(int count) {
  for (; count > 0; --count) {
    char bytes[kBufferSize];
    FILE* file = std::fopen(file_.c_str(), "rb");
    if (file == nullptr) fail("cannot read " + file_.string());
    const std::size_t records = std::fread(bytes, kRecordSize, kBufferSize / kRecordSize, file);
    std::fclose(file);
    file = std::fopen(file_.c_str(), "wb");
    if (file == nullptr) fail("cannot write " + file_.string());
    for (std::size_t i = 0; i < records; ++i)
      std::fwrite(bytes + i * kRecordSize, kRecordSize, 1, file);
    std::fclose(file);
  }
}

Database::Database(std::filesystem::path file, const std::string& bytes) {
  for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(file.string() + suffix);
  if (sqlite3_open(file.c_str(), &database_) != SQLITE_OK ||
      sqlite3_exec(database_,
                   "pragma journal_mode=wal; pragma synchronous=normal;"
                   "create table state(instance text primary key, records blob) without rowid;",
                   nullptr, nullptr, nullptr) != SQLITE_OK)
    fail(sqlite3_errmsg(database_));
  sqlite3_stmt* const insert = prepare("insert into state values('Bench', ?)");
  sqlite3_bind_blob(insert, 1, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
  step(insert);
  sqlite3_finalize(insert);
  begin_ = prepare("begin immediate");
  select_ = prepare("select records from state where instance = 'Bench'");
  update_ = prepare("update state set records = ? where instance = 'Bench'");
  commit_ = prepare("commit");
}

Database::~Database() {
  for (sqlite3_stmt* statement : {begin_, select_, update_, commit_}) sqlite3_finalize(statement);
  sqlite3_close(database_);
}

sqlite3_stmt* Database::prepare(const char* text) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(database_, text, -1, &statement, nullptr) != SQLITE_OK)
    fail(sqlite3_errmsg(database_));
  return statement;
}

void Database::step(sqlite3_stmt* statement) {
  if (sqlite3_step(statement) != SQLITE_DONE) fail(sqlite3_errmsg(database_));
  sqlite3_reset(statement);
}

void Database::call(int count) {
  for (; count > 0; --count) {
    step(begin_);
    if (sqlite3_step(select_) != SQLITE_ROW) fail(sqlite3_errmsg(database_));
    const int size = sqlite3_column_bytes(select_, 0);
    char bytes[kBufferSize];
    std::memcpy(bytes, sqlite3_column_blob(select_, 0), static_cast<std::size_t>(size));
    sqlite3_reset(select_);
    bytes[kRecordSize - 1] ^= 1;  // a state that changes
    sqlite3_bind_blob(update_, 1, bytes, size, SQLITE_STATIC);
    step(update_);
    step(commit_);
  }
}
