# Shared build rules: the compile options that all code obeys and the shape of a module.

add_library(zelk_options INTERFACE)
target_compile_options(zelk_options INTERFACE -Wall -Wextra -Wpedantic -Werror)
# GCC 12 sees overlapping copies in optimised concatenations of std::string that are none (its bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(zelk_options INTERFACE $<$<NOT:$<CONFIG:Debug>>:-Wno-restrict>)
endif()
if(ZELK_SANITIZE)
  target_compile_options(zelk_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                               -fno-omit-frame-pointer)
  target_link_options(zelk_options INTERFACE -fsanitize=address,undefined)
endif()
if(ZELK_FUZZ)
  target_compile_options(zelk_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# Scanners and parsers are generated code; they keep the warnings that their generators provoke.
function(zelk_generated_sources)
  set_source_files_properties(${ARGV} PROPERTIES COMPILE_OPTIONS
    "-Wno-unused-function;-Wno-sign-compare;-Wno-unused-but-set-variable;-Wno-unused-parameter;-Wno-pedantic;-Wno-missing-braces")
endfunction()

# zelk_module(NAME name INCLUDES dir... [SOURCES extra...] [DEPENDS target...])
# An object library of every .cpp in the calling folder.
function(zelk_module)
  cmake_parse_arguments(M "" "NAME" "INCLUDES;SOURCES;DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(NOT sources AND NOT M_SOURCES)
    file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/empty.cpp "")
    set(sources ${CMAKE_CURRENT_BINARY_DIR}/empty.cpp)
  endif()
  add_library(${M_NAME} OBJECT ${sources} ${M_SOURCES})
  target_link_libraries(${M_NAME} PRIVATE zelk_options)
  target_include_directories(${M_NAME} PRIVATE ${M_INCLUDES})
  if(M_DEPENDS)
    add_dependencies(${M_NAME} ${M_DEPENDS})
  endif()
endfunction()
