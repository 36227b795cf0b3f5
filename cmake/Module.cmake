# quillon_module(name PUBLIC deps... PRIVATE deps...)
#
# One static library for the folder `name`. Its headers are included as "name/Header.h" through a private include root
# that holds nothing but this folder, so that a folder can include only what its target depends on.
function(quillon_module name)
  cmake_parse_arguments(ARG "" "" "PUBLIC;PRIVATE" ${ARGN})
  set(folder ${CMAKE_SOURCE_DIR}/${name})
  set(root ${CMAKE_BINARY_DIR}/include/${name})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${folder} ${root}/${name} SYMBOLIC)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${folder}/*.cpp)
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${root})
  target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE quillon_options ${ARG_PRIVATE})
endfunction()
