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
  for (auto& [name, type] : program.types) {
    void* library = nullptr;
    if (type.library.empty()) {
      if (scanblocks == nullptr) scanblocks = open_scanblocks(path);
      library = scanblocks;
    } else {
      library = open_library(type.library);
    }
    void* symbol = dlsym(library, type.symbol.c_str());
    if (symbol == nullptr) throw Failure(std::string(dlerror()) + "; load a library that has it");
    type.function = reinterpret_cast<BlockFunction>(symbol);
  }
}

}  // namespace scanhost
