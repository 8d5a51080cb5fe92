// scanhost check: reads and wires a program and finds its blocks, calls nothing.
#include <cstdio>

#include "host/commands/commands.h"
#include "host/library.h"

namespace scanhost {

int check(const ScanOptions& options) {
  Program program = read_program(options.program);
  load_functions(program, options.library);
  std::puts("ok");
  return 0;
}

}  // namespace scanhost
