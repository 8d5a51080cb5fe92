#include "host/library.h"

#include <dlfcn.h>

#include <filesystem>

namespace scanhost {
namespace {

constexpr const char* kLibrary = "libscanblocks.so";
constexpr const char* kVersioned = "libscanblocks.so." SCANHOST_SOVERSION;

void* open_library(const std::string& path) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) throw Failure(dlerror());
  return library;
}

// The function of a type that the program declares; what is missing is reported at its library.
void* find_declared(const BlockType& type, Problems& problems) {
  void* library = dlopen(type.library.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* symbol = library == nullptr ? nullptr : dlsym(library, type.symbol.c_str());
  if (library == nullptr)
    problems.add(type.at, dlerror(),
                 "put the library beside the program, or its directory into LD_LIBRARY_PATH");
  else if (symbol == nullptr)
    problems.add(type.at, "the library has no function '" + type.symbol + "'",
                 "name the exported one: symbol = \"...\"");
  return symbol;
}

void* open_scanblocks(const std::string& path) {
  // Without a slash dlopen would search the system's directories.
  if (!path.empty()) return open_library(path.find('/') == path.npos ? "./" + path : path);
  std::error_code no_error;
  const auto here = std::filesystem::read_symlink("/proc/self/exe", no_error).parent_path();
  for (const char* directory : {".", "..", "../lib"})
    for (const char* name : {kVersioned, kLibrary}) {
      const std::filesystem::path candidate = here / directory / name;
      if (!here.empty() && std::filesystem::exists(candidate, no_error))
        return open_library(candidate.string());
    }
  try {
    return open_library(kVersioned);
  } catch (const Failure& failure) {
    throw Failure(std::string(failure.what()) +
                  "; install the library beside scanhost or name it: --library FILE");
  }
}

}  // namespace

void load_functions(Program& program, const std::string& path) {
  void* scanblocks = nullptr;
  Problems problems(program.path);
  for (auto& [name, type] : program.types) {
    void* symbol = nullptr;
    if (type.library.empty()) {
      if (scanblocks == nullptr) scanblocks = open_scanblocks(path);
      symbol = dlsym(scanblocks, type.symbol.c_str());
      if (symbol == nullptr) throw Failure(std::string(dlerror()) + "; load a library that has it");
    } else {
      symbol = find_declared(type, problems);
    }
    type.function = reinterpret_cast<BlockFunction>(symbol);
  }
  if (!problems.empty()) throw Rejection(problems.text());
}

}  // namespace scanhost
