# libtavimo.so: the engine and the host kit in one library.
find_package(PkgConfig REQUIRED)
# Their headers alone: the libraries are loaded when a font or sound is first used.
pkg_check_modules(DRAWING_HEADERS REQUIRED cairo freetype2 fontconfig)
pkg_check_modules(SOUND_HEADERS REQUIRED libpulse)
# On Linux the kit is part of the library.
target_sources(tavimo_objects PRIVATE ${kitSources})
target_include_directories(tavimo_objects SYSTEM PUBLIC ${DRAWING_HEADERS_INCLUDE_DIRS})
target_include_directories(tavimo_objects SYSTEM PRIVATE ${SOUND_HEADERS_INCLUDE_DIRS})
target_link_libraries(tavimo_objects PUBLIC Threads::Threads ${CMAKE_DL_LIBS})

set(versionScript ${CMAKE_CURRENT_BINARY_DIR}/tavimo.map)
set(aliasOptions ${CMAKE_CURRENT_BINARY_DIR}/tavimo.aliases)
add_custom_command(
  OUTPUT ${versionScript} ${aliasOptions}
  COMMAND Python3::Interpreter ${listMaker} --table ${exportTable} --kit ${PROJECT_SOURCE_DIR}/include/tavimo_host.h
          --version-script ${versionScript} --aliases ${aliasOptions}
  DEPENDS ${exportTable} ${listMaker} ${PROJECT_SOURCE_DIR}/include/tavimo_host.h
  VERBATIM)
add_custom_target(tavimo_export_lists DEPENDS ${versionScript} ${aliasOptions})

# Whatever links the objects itself needs the second names too.
add_library(tavimo_aliases INTERFACE)
target_link_options(tavimo_aliases INTERFACE -Wl,@${aliasOptions})
add_dependencies(tavimo_aliases tavimo_export_lists)

# Never unmapped: a digest worker may still run when a host closes the library.
add_library(tavimo SHARED)
target_link_libraries(tavimo PRIVATE tavimo_objects tavimo_aliases)
target_include_directories(tavimo PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:include>)
target_link_options(tavimo PRIVATE -Wl,--version-script=${versionScript} -Wl,-z,nodelete)
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  target_link_options(tavimo PRIVATE -Wl,--no-undefined)  # a sanitizer's symbols come from the program
endif()
set_target_properties(tavimo PROPERTIES SOVERSION 0 VERSION ${PROJECT_VERSION} LINK_DEPENDS ${versionScript})
add_dependencies(tavimo tavimo_export_lists)
