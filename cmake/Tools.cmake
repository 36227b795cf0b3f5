# Warnings, the compiler cache, the fast linker and the sanitizers: one place for all targets.
option(QUILLON_SANITIZE "Build with the address and undefined behaviour sanitizers" OFF)

add_library(quillon_options INTERFACE)
target_compile_options(quillon_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
# This compiler reports some overflows that its own inlining invents; the sanitizers watch the real ones.
target_compile_options(quillon_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict -Wno-stringop-overflow -Wno-array-bounds>)

if(QUILLON_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -O1 -g1)
  add_link_options(-fsanitize=address,undefined)
endif()

find_program(QUILLON_CCACHE ccache)
if(QUILLON_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${QUILLON_CCACHE})
endif()

find_program(QUILLON_MOLD mold)
if(QUILLON_MOLD)
  add_link_options(-fuse-ld=mold)
endif()
