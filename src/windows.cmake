# tavimo.dll with its import library, and the host kit as a static library beside it. Everything of the compiler's own goes
# into the DLL: it needs the system's libraries alone.
target_compile_definitions(tavimo_objects PUBLIC
  UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601 WINVER=0x0601)  # Windows 7
# g++ 12 takes texts that are moved out of an optional for uninitialised ones.
target_compile_options(tavimo_objects PUBLIC $<$<COMPILE_LANGUAGE:CXX>:-Wno-maybe-uninitialized>)
target_link_libraries(tavimo_objects PUBLIC Threads::Threads gdi32 winmm)

set(definition ${CMAKE_CURRENT_BINARY_DIR}/tavimo.def)
set(importDefinition ${CMAKE_CURRENT_BINARY_DIR}/tavimo_import.def)
set(aliasScript ${CMAKE_CURRENT_BINARY_DIR}/tavimo_aliases.ld)
set(pointerBytes ${CMAKE_SIZEOF_VOID_P})
add_custom_command(
  OUTPUT ${definition} ${importDefinition} ${aliasScript}
  COMMAND Python3::Interpreter ${listMaker} --table ${exportTable} --pointer-bytes ${pointerBytes}
          --def ${definition} --import-def ${importDefinition} --alias-script ${aliasScript}
  DEPENDS ${exportTable} ${listMaker}
  VERBATIM)
add_custom_target(tavimo_export_lists DEPENDS ${definition} ${importDefinition} ${aliasScript})

# Whatever links the objects itself needs the second names too.
add_library(tavimo_aliases INTERFACE)
target_link_options(tavimo_aliases INTERFACE ${aliasScript})
add_dependencies(tavimo_aliases tavimo_export_lists)

add_library(tavimo_dll SHARED)
target_link_libraries(tavimo_dll PRIVATE tavimo_objects)
target_link_options(tavimo_dll PRIVATE -static -static-libgcc -static-libstdc++ ${definition} -Wl,--enable-stdcall-fixup
  $<$<CONFIG:Release>:-s>)
set_target_properties(tavimo_dll PROPERTIES OUTPUT_NAME tavimo PREFIX "" LINK_DEPENDS ${definition})
add_dependencies(tavimo_dll tavimo_export_lists)
tavimo_windows_resource(tavimo_dll tavimo.dll "Audio and text engine of a language-learning repeater")

# Made from the list of decorated names: the one that the linker makes does not fit 32-bit callers.
set(importLibrary ${CMAKE_CURRENT_BINARY_DIR}/libtavimo.a)
string(REGEX REPLACE "g\\+\\+.*$" "dlltool" dlltool ${CMAKE_CXX_COMPILER})
add_custom_command(
  OUTPUT ${importLibrary}
  COMMAND ${dlltool} --kill-at --dllname tavimo.dll --input-def ${importDefinition} --output-lib ${importLibrary}
  DEPENDS ${importDefinition}
  VERBATIM)
add_custom_target(tavimo_import_library ALL DEPENDS ${importLibrary})

# What a host program links: the engine's import library. The kit brings the platform layer's own pieces with it.
add_library(tavimo INTERFACE)
add_dependencies(tavimo tavimo_import_library tavimo_dll)
target_link_libraries(tavimo INTERFACE ${importLibrary})
target_include_directories(tavimo INTERFACE ${PROJECT_SOURCE_DIR}/include)

# The host kit: windows and devices are the system's own, so it needs nothing of the engine's but the platform layer.
add_library(tavimo_host STATIC ${kitSources} ${platformSources})
target_include_directories(tavimo_host PUBLIC ${PROJECT_SOURCE_DIR}/include PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_definitions(tavimo_host PRIVATE $<TARGET_PROPERTY:tavimo_objects,INTERFACE_COMPILE_DEFINITIONS>)
target_compile_options(tavimo_host PRIVATE $<TARGET_PROPERTY:tavimo_objects,INTERFACE_COMPILE_OPTIONS>)
target_link_libraries(tavimo_host PUBLIC Threads::Threads gdi32 gdiplus winmm comctl32)
tavimo_warnings(tavimo_host)
