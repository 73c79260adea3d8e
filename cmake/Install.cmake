# What "cmake --install" puts in place: the library, its two headers, a CMake package, a pkg-config file, the Python binding
# and the examples. The program installs itself (hosts/tavimo).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
find_package(Python3 REQUIRED COMPONENTS Interpreter)

install(TARGETS tavimo EXPORT tavimoTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_SOURCE_DIR}/include/tavimo.h ${PROJECT_SOURCE_DIR}/include/tavimo_host.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/tavimo)
install(EXPORT tavimoTargets NAMESPACE tavimo:: DESTINATION ${packageFolder})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/tavimoConfig.cmake.in ${PROJECT_BINARY_DIR}/tavimoConfig.cmake
  INSTALL_DESTINATION ${packageFolder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tavimoConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tavimoConfig.cmake ${PROJECT_BINARY_DIR}/tavimoConfigVersion.cmake
  DESTINATION ${packageFolder})

# The prefix may be chosen as late as at the installation.
install(CODE "set(CMAKE_INSTALL_LIBDIR \"${CMAKE_INSTALL_LIBDIR}\")
set(CMAKE_INSTALL_INCLUDEDIR \"${CMAKE_INSTALL_INCLUDEDIR}\")
set(PROJECT_VERSION \"${PROJECT_VERSION}\")
configure_file(\"${CMAKE_CURRENT_LIST_DIR}/tavimo.pc.in\" \"${PROJECT_BINARY_DIR}/tavimo.pc\" @ONLY)
file(INSTALL \"${PROJECT_BINARY_DIR}/tavimo.pc\"
  DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig\")")

set(pythonBinding ${PROJECT_BINARY_DIR}/tavimo.py)
add_custom_command(
  OUTPUT ${pythonBinding}
  COMMAND Python3::Interpreter -B ${PROJECT_SOURCE_DIR}/tools/make_bindings.py
          --table ${PROJECT_SOURCE_DIR}/exports/tavimo.exports --python ${pythonBinding}
  DEPENDS ${PROJECT_SOURCE_DIR}/exports/tavimo.exports ${PROJECT_SOURCE_DIR}/tools/make_bindings.py
          ${PROJECT_SOURCE_DIR}/tools/make_export_lists.py
  VERBATIM)
add_custom_target(tavimo_python ALL DEPENDS ${pythonBinding})
install(FILES ${pythonBinding} DESTINATION ${CMAKE_INSTALL_DATADIR}/tavimo/python)
install(FILES examples/host.c examples/record.c examples/host.py examples/read_files.py
  DESTINATION ${CMAKE_INSTALL_DATADIR}/tavimo/examples)
