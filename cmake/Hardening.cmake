# What a release build adds so that a fault in it is caught, and is no way in: checked buffers and stacks, addresses that
# nobody can guess, tables that are read-only once the program runs. tools/check_hardening.py reads it from the built files.
# Sanitizers and debuggers get plain code.
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  add_compile_options(-fstack-protector-strong)
  if(WIN32)
    # The stack is probed page by page on this system in any case. What the checked stacks call is our own
    # (src/platform/win32/stack_guard.cpp), so the linker is not told of them.
    add_link_options(-Wl,--dynamicbase,--nxcompat)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
      add_link_options(-Wl,--high-entropy-va)
    endif()
  else()
    include(CheckCXXCompilerFlag)
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES C CXX)  # makes the linker get its word for it
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    foreach(flag stack-clash-protection cf-protection)  # not every processor has them
      check_cxx_compiler_flag(-f${flag} HAS_${flag})
      if(HAS_${flag})
        add_compile_options(-f${flag})
      endif()
    endforeach()
    add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
  endif()
endif()
