# libFuzzer wants coverage and sanitizers in all code.
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  message(FATAL_ERROR "TVK_FUZZ needs clang (CMAKE_C_COMPILER, CMAKE_CXX_COMPILER)")
endif()
set(TVK_FUZZ_COVERAGE -fsanitize=fuzzer-no-link)
add_compile_options(${TVK_FUZZ_COVERAGE} -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
add_link_options(-fsanitize=address,undefined)
