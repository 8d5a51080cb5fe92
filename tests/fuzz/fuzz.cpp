// Any bytes as a state file, any numbers and texts at the pins, any clock, for every block. Beyond
// what the sanitizers find, each call must open the path of its instance, leave a state file that
// is exactly the records of the block, and write nothing but the values of its outputs.
//
// libFuzzer drives it; it may not be asked to start processes (-jobs, -merge): the blocks' shell
// commands, and so its own, are taken away.
#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>

#include "exports/catalogue.h"
#include "frame/pin.h"
#include "tests/support/record.h"

#define FUNCTION_NAME(name)
#define DATA_NAME(name)
#define BLOCK_NAME(name) extern "C" void name(const Pin*, Pin*);
#include "exports/names.def"
#undef BLOCK_NAME

namespace {

constexpr void (*kFunctions[])(const Pin*, Pin*) = {
#define BLOCK_NAME(name) &name,
#include "exports/names.def"
#undef BLOCK_NAME
};

struct Scene {
  timeval now;
  std::string path;  // that the block must open
  bool exists;
  int state;  // the files, open for this program
  int probe;
  std::string state_name, probe_name;
} scene;

// The number of calls, printed at the end.
struct CallCount {
  unsigned long long calls = 0;
  ~CallCount() { std::printf("calls %llu\n", calls); }
} call_count;

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "not so: %s\n", what);
  abort();
}

// What the fuzzer sends, taken from the front; zeros at its end.
struct Source {
  const std::uint8_t* data;
  std::size_t size;

  std::string bytes(std::size_t count) {
    count = count < size ? count : size;
    std::string taken(reinterpret_cast<const char*>(data), count);
    data += count;
    size -= count;
    return taken;
  }
  template <class Type>
  Type take() {
    const std::string taken = bytes(sizeof(Type));
    Type value{};
    std::memcpy(&value, taken.data(), taken.size());
    return value;
  }
  double number() {
    constexpr double kUsual[] = {0, 1, 1, 0, 1, 2, -1, 1.5, 60, 1e300};
    const auto choice = take<std::uint8_t>();
    return choice < 200 ? kUsual[choice % std::size(kUsual)] : take<double>();
  }
};

std::string text_of(const char* field) { return {field, strnlen(field, 63)}; }

// A file that the block may have written, with any texts in it.
std::string file_of(const scanblocks::BlockInfo& block, Source& source) {
  std::string file;
  for (const scanblocks::Field& key : block.keys) {
    const auto choice = source.take<std::uint8_t>();
    char text[400] = "";
    if (choice < 100) std::snprintf(text, sizeof text, "%.6f", source.number());
    if (choice >= 100 && choice < 200)
      std::snprintf(text, sizeof text, "%lld", source.take<long long>());
    file += record(key.name,
                   choice < 200 ? std::string(text, strnlen(text, 63)) : source.bytes(choice % 65));
  }
  return file;
}

void put(int file, const std::string& bytes) {
  require(ftruncate(file, 0) == 0 &&
              pwrite(file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
          "the fuzzer's own file can be written");
}

void check_file(const scanblocks::BlockInfo& block) {
  char file[20 * 96];
  const ssize_t size = pread(scene.state, file, sizeof file, 0);
  require(size == static_cast<ssize_t>(block.keys.size() * 96), "the file is the block's records");
  const char* at = file;
  for (const scanblocks::Field& key : block.keys) {
    const std::string value = text_of(at + 32);
    require(!value.empty(), "each key has a value");
    require(std::memcmp(at, record(key.name, value).data(), 96) == 0, "padded with zeros");
    at += 96;
  }
}

}  // namespace

// The state file and the output of the probes lie where the fuzzer has put them.
extern "C" int open(const char* path, int flags, ...) {
  const char* name = path;
  if (scene.path == path) {
    if (!scene.exists && (flags & O_CREAT) == 0) {
      errno = ENOENT;
      return -1;
    }
    scene.exists = true;
    name = scene.state_name.c_str();
  } else if (std::strncmp(path, "/mnt/ramdisk/ReadFree", 21) == 0) {
    name = scene.probe_name.c_str();
  } else {
    const std::string all = path;
    require(all.size() < 4 || all.substr(all.size() - 4) != ".dat", "the path of the instance");
  }
  return static_cast<int>(syscall(SYS_openat, AT_FDCWD, name, flags, 0666));
}

extern "C" int system(const char*) { return 0; }

extern "C" int gettimeofday(timeval* now, void*) noexcept {
  *now = scene.now;
  return 0;
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  std::string directory =
      access("/dev/shm", W_OK) == 0 ? "/dev/shm/scanblocks-XXXXXX" : "/tmp/scanblocks-XXXXXX";
  require(mkdtemp(directory.data()) != nullptr, "a directory for the files");
  scene.state_name = directory + "/state";
  scene.probe_name = directory + "/probe";
  scene.state = open(scene.state_name.c_str(), O_RDWR | O_CREAT);
  scene.probe = open(scene.probe_name.c_str(), O_RDWR | O_CREAT);
  static std::string remains;
  remains = directory;
  atexit([] {
    unlink(scene.state_name.c_str());
    unlink(scene.probe_name.c_str());
    rmdir(remains.c_str());
  });
  setenv("TZ", "Europe/Berlin", 1);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Source source{data, size};
  const std::size_t index = source.take<std::uint8_t>() % std::size(kFunctions);
  const scanblocks::BlockInfo& block = *scanblocks::catalogue_of_blocks()[index];
  const auto shape = source.take<std::uint8_t>();

  // Just the pins that the block has, on the heap: beyond them lies what the sanitizer guards.
  const std::size_t inputs = SCANBLOCKS_FIRST_VALUE + block.inputs.size();
  Pin* const in = new Pin[inputs]();
  Pin* const out = new Pin[block.outputs.size()]();
  scene.path = "";
  for (Pin* pin = in; pin < in + 3; ++pin) {
    const std::string text = (shape & 1) != 0 ? source.bytes(64) : std::string(1, 'x');
    std::memcpy(pin->Text, text.data(), text.size());
  }
  scene.path = text_of(in[SCANBLOCKS_STATE_DIR].Text) + "/" + block.name + "_" +
               text_of(in[SCANBLOCKS_GROUP_TAG].Text) + "_" +
               text_of(in[SCANBLOCKS_INSTANCE_TAG].Text) + ".dat";
  scene.now.tv_sec = (shape & 2) != 0 ? source.take<time_t>() : 1700000000;
  scene.exists = (shape & 4) == 0;
  std::string file;
  if ((shape & 8) != 0) file = file_of(block, source);
  const int calls = 1 + (shape >> 6);
  for (int call = 0; call < calls; ++call) {
    for (Pin* pin = in + SCANBLOCKS_FIRST_VALUE; pin < in + inputs; ++pin)
      pin->Value = source.number();
    const auto pause = source.take<std::uint8_t>();
    scene.now.tv_sec =
        static_cast<time_t>(static_cast<unsigned long>(scene.now.tv_sec) +
                            (pause < 200 ? pause : source.take<unsigned long>() >> (pause % 64)));
    scene.now.tv_usec = source.take<std::uint32_t>() % 1000000;
    if (call == 0) {  // what is left is the end of the file, or what a probe printed
      put(scene.probe, {reinterpret_cast<const char*>(source.data), source.size});
      if ((shape & 16) != 0) file += source.bytes(source.size);
      put(scene.state, scene.exists ? file : "");
    }
    kFunctions[index](in, out);
    ++call_count.calls;
    if (!block.keys.empty()) check_file(block);
    for (Pin* pin = out; pin < out + block.outputs.size(); ++pin) {
      pin->Value = 0;
      const Pin untouched{};
      require(std::memcmp(pin, &untouched, sizeof untouched) == 0, "only Value is written");
    }
  }
  delete[] in;
  delete[] out;
  return 0;
}
