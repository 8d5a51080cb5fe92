# Toolchain of the target: ARM926, 32 bits, no FPU. Debian: g++-arm-linux-gnueabi; the tests run
# under qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)

set(CMAKE_C_COMPILER arm-linux-gnueabi-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabi-g++)
set(target_flags "-march=armv5te -mtune=arm926ej-s -mfloat-abi=soft")
set(CMAKE_C_FLAGS_INIT "${target_flags}")
set(CMAKE_CXX_FLAGS_INIT "${target_flags} -Wno-psabi")
# Storage and cache are small there: a tenth less code than with -O3.
set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG" CACHE STRING "Flags of release builds")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG" CACHE STRING "Flags of release builds")
set(SCANBLOCKS_SMALL_BLOCKS ON CACHE BOOL "Optimise the blocks for size")

set(CMAKE_FIND_ROOT_PATH /usr/arm-linux-gnueabi)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-arm;-cpu;arm926;-L;/usr/arm-linux-gnueabi")
