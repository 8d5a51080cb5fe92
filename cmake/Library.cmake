# The library: one set of objects for the shared library, the host's catalogue and the tests.

# One file per block, by family.
file(GLOB SCANBLOCKS_BLOCK_SOURCES CONFIGURE_DEPENDS blocks/*/*.cpp)

add_library(scanblocks_objects OBJECT
  frame/clock.cpp
  frame/field.cpp
  frame/state_file.cpp
  frame/text.cpp
  exports/data.cpp
  ${SCANBLOCKS_BLOCK_SOURCES}
)
target_include_directories(scanblocks_objects PUBLIC ${PROJECT_SOURCE_DIR} frame)
target_link_libraries(scanblocks_objects PRIVATE scanblocks_warnings)
target_compile_options(scanblocks_objects PRIVATE
  -fno-exceptions -fno-rtti -fno-threadsafe-statics
  -fvisibility=hidden -fvisibility-inlines-hidden
  -ffp-contract=off -ffunction-sections -fdata-sections
  # A call runs with the branch history of the kernel: plain branches beat tables of addresses.
  -fno-jump-tables -fno-semantic-interposition
  -fno-asynchronous-unwind-tables -fno-unwind-tables)

option(SCANBLOCKS_SMALL_BLOCKS "Optimise the blocks for size, the frame as the build type says" OFF)
if(SCANBLOCKS_SMALL_BLOCKS)
  set_source_files_properties(${SCANBLOCKS_BLOCK_SOURCES} PROPERTIES COMPILE_OPTIONS -Os)
endif()

# The public headers, to be included as installed: <scanblocks/scanblocks.h>.
foreach(header exports/scanblocks.h frame/pin.h)
  cmake_path(GET header FILENAME name)
  configure_file(${header} ${PROJECT_BINARY_DIR}/include/scanblocks/${name} COPYONLY)
endforeach()
add_library(scanblocks_headers INTERFACE)
add_library(scanblocks::headers ALIAS scanblocks_headers)
target_include_directories(scanblocks_headers INTERFACE ${PROJECT_BINARY_DIR}/include)

# names.def -> version script
file(STRINGS exports/names.def name_lines REGEX "_NAME\\(")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS exports/names.def)
set(version_script ${PROJECT_BINARY_DIR}/scanblocks.map)
set(exported_names "")
foreach(line IN LISTS name_lines)
  string(REGEX REPLACE ".*_NAME\\(([A-Za-z0-9_]+)\\).*" "\\1" name "${line}")
  string(APPEND exported_names "    ${name};\n")
endforeach()
file(CONFIGURE OUTPUT ${version_script}
  CONTENT "{\n  global:\n@exported_names@  local:\n    *;\n};\n" @ONLY)

add_library(scanblocks SHARED $<TARGET_OBJECTS:scanblocks_objects>)
add_library(scanblocks::scanblocks ALIAS scanblocks)
# Linked as C: the C library alone at run time.
set_target_properties(scanblocks PROPERTIES
  VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
  LINKER_LANGUAGE C LINK_DEPENDS ${version_script})
target_include_directories(scanblocks INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/exports> $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/frame>)
target_link_options(scanblocks PRIVATE
  -static-libgcc -Wl,--as-needed -Wl,--gc-sections -Wl,-O1 -Wl,-z,relro -Wl,-z,noexecstack
  -Wl,--version-script=${version_script} -Wl,-Map=${PROJECT_BINARY_DIR}/scanblocks.link)

# The catalogue for the host and the tests: the same objects, read as tables.
add_library(scanblocks_catalogue STATIC exports/catalogue.cpp)
target_link_libraries(scanblocks_catalogue PUBLIC scanblocks_objects PRIVATE scanblocks_warnings)
