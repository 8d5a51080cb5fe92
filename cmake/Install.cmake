# What `cmake --install` lays out: library, header, CMake and pkg-config files, host, manual pages,
# example programs and the tools for traces. Components: library, development, host, tools.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS scanblocks EXPORT scanblocks
  LIBRARY COMPONENT library NAMELINK_COMPONENT development)
install(FILES exports/scanblocks.h frame/pin.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/scanblocks COMPONENT development)
target_include_directories(scanblocks INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/scanblocks)
install(EXPORT scanblocks NAMESPACE scanblocks:: FILE scanblocks-config.cmake
  DESTINATION ${package_dir} COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/scanblocks-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/scanblocks-config-version.cmake
  DESTINATION ${package_dir} COMPONENT development)

# Relative to its own place, so that an installation can be moved.
file(RELATIVE_PATH pc_to_prefix
  /p/${CMAKE_INSTALL_LIBDIR}/pkgconfig /p)
string(REGEX REPLACE "/$" "" pc_to_prefix ${pc_to_prefix})
configure_file(cmake/scanblocks.pc.in ${PROJECT_BINARY_DIR}/scanblocks.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/scanblocks.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(FILES docs/man/scanblocks.3
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)
if(TARGET scanhost)
  install(TARGETS scanhost RUNTIME COMPONENT host)
  install(FILES docs/man/scanhost.1
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT host)
  install(FILES packaging/scanhost@.service DESTINATION lib/systemd/system COMPONENT host)
  install(DIRECTORY examples
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT host
    PATTERN "expected.csv" EXCLUDE PATTERN "*.args" EXCLUDE)

  foreach(tool plot events)
    install(PROGRAMS scripts/${tool}
      DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME scanhost-${tool} COMPONENT tools)
    install(FILES docs/man/scanhost-${tool}.1
      DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
  endforeach()
  install(FILES scripts/tracefile.py DESTINATION share/scanhost COMPONENT tools)
endif()
