# oxaqrycln_flags: the flags that every target of this project is compiled and linked with.
# oxaqrycln_layer(): declares one layer.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# A shared library that the static one is linked into must not export its symbols.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(OXAQRYCLN_CCACHE ccache)
if(OXAQRYCLN_CCACHE)
  # Without these two exceptions ccache does not keep what was compiled with precompiled headers.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${OXAQRYCLN_CCACHE})
endif()

if(WIN32)
  set(OXAQRYCLN_OTHER_SYSTEM posix)
else()
  set(OXAQRYCLN_OTHER_SYSTEM windows)
endif()

add_library(oxaqrycln_flags INTERFACE)
target_compile_options(oxaqrycln_flags INTERFACE
  -Wall -Wextra -Wconversion -Wsign-conversion -Wshadow -Wimplicit-fallthrough -Werror)

if(CMAKE_BUILD_TYPE STREQUAL "Release")
  # g++ 12 wrongly reports overlapping copies in "text" + std::string.
  target_compile_options(oxaqrycln_flags INTERFACE -Wno-restrict)
  target_compile_definitions(oxaqrycln_flags INTERFACE _GLIBCXX_ASSERTIONS)
  target_compile_options(oxaqrycln_flags INTERFACE -fstack-protector-strong)
  # With mingw-w64 the option also chooses a library.
  target_link_options(oxaqrycln_flags INTERFACE -fstack-protector-strong)
  if(NOT WIN32)
    target_compile_definitions(oxaqrycln_flags INTERFACE _FORTIFY_SOURCE=3)
    target_compile_options(oxaqrycln_flags INTERFACE -fstack-clash-protection -fcf-protection=full)
    target_link_options(oxaqrycln_flags INTERFACE -Wl,-z,relro,-z,now)
  endif()
endif()

set(OXAQRYCLN_SANITIZE "" CACHE STRING "Sanitizers, as in -fsanitize=")
if(OXAQRYCLN_SANITIZE)
  # With the sanitizers' instrumentation g++ 12 wrongly reports uninitialised members of std::function.
  target_compile_options(oxaqrycln_flags INTERFACE
    -fsanitize=${OXAQRYCLN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -Wno-maybe-uninitialized)
  target_link_options(oxaqrycln_flags INTERFACE -fsanitize=${OXAQRYCLN_SANITIZE})
endif()

option(OXAQRYCLN_COVERAGE "Count the executed lines" OFF)
if(OXAQRYCLN_COVERAGE)
  target_compile_options(oxaqrycln_flags INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(oxaqrycln_flags INTERFACE --coverage)
endif()

if(OXAQRYCLN_TIDY)
  find_program(OXAQRYCLN_CLANG_TIDY clang-tidy REQUIRED)
  set(CMAKE_CXX_CLANG_TIDY ${OXAQRYCLN_CLANG_TIDY} --quiet)
endif()

# Removes the sources for the other operating system from the list variable.
macro(oxaqrycln_drop_other_system sources)
  list(FILTER ${sources} EXCLUDE REGEX "_${OXAQRYCLN_OTHER_SYSTEM}\\.cpp$")
endmacro()

# oxaqrycln_layer(FOLDER [OF library] SOURCES a.cpp ... NEEDS folder ...)
# One layer: the sources of a folder, listed by hand, and what its files may include besides the folder's own headers:
# other folders, single headers, or "public" for every installed header. Of the sources for one operating system, those
# for the other one are left out. tests/source_rules/check_sources.py reads these
# lists and reports any other include. The objects become part of the library; the default is oxaqrycln.
function(oxaqrycln_layer folder)
  cmake_parse_arguments(PARSE_ARGV 1 layer "" "OF" "SOURCES;NEEDS")
  string(REPLACE "/" "_" name ${folder})
  oxaqrycln_drop_other_system(layer_SOURCES)
  if(NOT layer_OF)
    set(layer_OF oxaqrycln)
  endif()
  add_library(oxaqrycln_${name} OBJECT ${layer_SOURCES})
  target_include_directories(oxaqrycln_${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/generated)
  target_link_libraries(oxaqrycln_${name} PRIVATE oxaqrycln_flags)
  set_property(GLOBAL APPEND PROPERTY OXAQRYCLN_OBJECTS_${layer_OF} $<TARGET_OBJECTS:oxaqrycln_${name}>)
endfunction()

# oxaqrycln_precompile(TARGET [FROM other] header ...): compiles the library headers once for all sources of the target,
# or uses those of the other target. clang-tidy does not read what g++ precompiles.
function(oxaqrycln_precompile target)
  cmake_parse_arguments(PARSE_ARGV 1 precompile "" "FROM" "")
  if(OXAQRYCLN_TIDY)
    return()
  endif()
  if(precompile_FROM)
    target_precompile_headers(${target} REUSE_FROM ${precompile_FROM})
  else()
    target_precompile_headers(${target} PRIVATE ${precompile_UNPARSED_ARGUMENTS})
  endif()
endfunction()
