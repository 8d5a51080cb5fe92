# Warnings of all code of this project; errors where CI asks for it.
option(SCANBLOCKS_WERROR "Treat warnings as errors" OFF)

add_library(scanblocks_warnings INTERFACE)
target_compile_options(scanblocks_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wundef
  $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast -Wnon-virtual-dtor>
  $<$<BOOL:${SCANBLOCKS_WERROR}>:-Werror>)
