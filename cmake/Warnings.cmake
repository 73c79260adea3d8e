# The warnings every target of ours is built with; each is an error.
function(tavimo_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wconversion -Wshadow -Werror)
endfunction()
