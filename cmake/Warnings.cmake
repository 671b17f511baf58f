# tvk_warnings(target): the warnings that all of our code compiles without.
function(tvk_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wcast-qual -Wformat=2
                         -Wundef -Wnull-dereference
                         $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast>
                         $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes -Wmissing-prototypes>)
  if(TVK_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
