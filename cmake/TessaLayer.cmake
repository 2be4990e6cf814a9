# tessa_layer(NAME [USES LAYER...] [LIBRARIES TARGET...] [PCH FILE | PCH_OF LAYER])
#
# A folder under src/ as a static library. Its include folder in the build tree holds one link, to
# its own folder, and it sees those of the layers it names and of the ones these name: an include
# against the direction stops with "No such file". The layer's main.cpp, if it has one, is left to
# the program.
function(tessa_layer name)
  cmake_parse_arguments(layer "" "PCH;PCH_OF" "USES;LIBRARIES" ${ARGN})
  set(folder ${CMAKE_CURRENT_SOURCE_DIR}/${name})
  set(include_folder ${CMAKE_BINARY_DIR}/include/${name})
  file(MAKE_DIRECTORY ${include_folder})
  file(CREATE_LINK ${folder} ${include_folder}/${name} SYMBOLIC)
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${include_folder})
  target_link_libraries(${name} PUBLIC ${layer_USES} ${layer_LIBRARIES} tessa_options
                        PRIVATE tessa_warnings)
  if(layer_PCH)
    target_precompile_headers(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${layer_PCH})
  elseif(layer_PCH_OF)
    target_precompile_headers(${name} REUSE_FROM ${layer_PCH_OF})
  endif()
endfunction()
