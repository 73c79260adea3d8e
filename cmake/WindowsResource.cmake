# What the system and a person in the Explorer learn of a DLL or a program: its version, and of a program its manifest. The
# compiler of resources knows none of the options of the others, so it is called by itself.
function(tavimo_windows_resource target fileName description)
  get_target_property(kind ${target} TYPE)
  if(kind STREQUAL EXECUTABLE)
    set(fileType VFT_APP)
    set(hasManifest 1)
  else()
    set(fileType VFT_DLL)
    set(hasManifest 0)
  endif()
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  set(object ${CMAKE_CURRENT_BINARY_DIR}/${target}_resource.o)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/windows.rc.in ${script} @ONLY)
  add_custom_command(OUTPUT ${object}
    COMMAND ${CMAKE_RC_COMPILER} -DTAVIMO_HAS_MANIFEST=${hasManifest} ${script} ${object}
    DEPENDS ${script} ${PROJECT_SOURCE_DIR}/cmake/program.manifest
    VERBATIM)
  set_source_files_properties(${object} PROPERTIES EXTERNAL_OBJECT TRUE)
  target_sources(${target} PRIVATE ${object})
endfunction()
