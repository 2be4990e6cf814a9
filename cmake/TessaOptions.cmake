# Compiler settings that every target of the project shares.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # The precompiled header is only reused from the cache with these relaxations.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      ${CCACHE_PROGRAM})
endif()

add_library(tessa_options INTERFACE)
# No fused multiply-add and no fast-math: a temperature is the same number on every machine.
target_compile_options(tessa_options INTERFACE -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(tessa_options INTERFACE -fpch-preprocess)
endif()
if(TESSA_CHECKED_LIBRARY)
  target_compile_definitions(tessa_options INTERFACE _GLIBCXX_ASSERTIONS)
endif()
if(TESSA_SANITIZE)
  target_compile_options(tessa_options INTERFACE -fsanitize=address,undefined
                         -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tessa_options INTERFACE -fsanitize=address,undefined)
endif()
if(TESSA_BUILD_FUZZERS)
  target_compile_options(tessa_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                         -fno-sanitize-recover=all)
  target_link_options(tessa_options INTERFACE -fsanitize=address,undefined)
endif()
find_program(MOLD_PROGRAM mold)
if(MOLD_PROGRAM)
  target_link_options(tessa_options INTERFACE -fuse-ld=mold)
endif()
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  target_link_options(tessa_options INTERFACE -Wl,-O1 -Wl,--as-needed)
endif()

# Warnings are errors in the program itself.
add_library(tessa_warnings INTERFACE)
target_compile_options(tessa_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                       -Werror)
