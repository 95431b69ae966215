# The flags every target of this project is compiled and linked with: oxaqrycln_flags.
# Also oxaqrycln_layer(), which declares one layer.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# The static library may become part of a shared one, which then exports nothing of it.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(OXAQRYCLN_CCACHE ccache)
if(OXAQRYCLN_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${OXAQRYCLN_CCACHE})
endif()

add_library(oxaqrycln_flags INTERFACE)
target_compile_options(oxaqrycln_flags INTERFACE
  -Wall -Wextra -Wconversion -Wsign-conversion -Wshadow -Wimplicit-fallthrough -Werror)

if(CMAKE_BUILD_TYPE STREQUAL "Release")
  # g++ 12 reports overlapping copies in "text" + std::string that do not overlap.
  target_compile_options(oxaqrycln_flags INTERFACE -Wno-restrict)
  target_compile_definitions(oxaqrycln_flags INTERFACE _FORTIFY_SOURCE=3 _GLIBCXX_ASSERTIONS)
  target_compile_options(oxaqrycln_flags INTERFACE
    -fstack-protector-strong -fstack-clash-protection -fcf-protection=full)
  target_link_options(oxaqrycln_flags INTERFACE -Wl,-z,relro,-z,now)
endif()

set(OXAQRYCLN_SANITIZE "" CACHE STRING "Sanitizers, as in -fsanitize=")
if(OXAQRYCLN_SANITIZE)
  # g++ 12 sees uninitialised members of std::function where the sanitizers' own code stands between.
  target_compile_options(oxaqrycln_flags INTERFACE
    -fsanitize=${OXAQRYCLN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -Wno-maybe-uninitialized)
  target_link_options(oxaqrycln_flags INTERFACE -fsanitize=${OXAQRYCLN_SANITIZE})
endif()

option(OXAQRYCLN_COVERAGE "Count the lines that run" OFF)
if(OXAQRYCLN_COVERAGE)
  target_compile_options(oxaqrycln_flags INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(oxaqrycln_flags INTERFACE --coverage)
endif()

if(OXAQRYCLN_TIDY)
  find_program(OXAQRYCLN_CLANG_TIDY clang-tidy REQUIRED)
  set(CMAKE_CXX_CLANG_TIDY ${OXAQRYCLN_CLANG_TIDY} --quiet)
endif()

# oxaqrycln_layer(FOLDER [OF library] SOURCES a.cpp ... NEEDS folder ...)
# One layer: the sources of a folder, listed by hand, and what its files may include besides the folder's own headers:
# other folders, single headers, or "public" for every header that is installed. tests/source_rules/check_sources.py reads these
# lists and refuses any other include. The objects become part of the library, oxaqrycln where none is named.
function(oxaqrycln_layer folder)
  cmake_parse_arguments(PARSE_ARGV 1 layer "" "OF" "SOURCES;NEEDS")
  string(REPLACE "/" "_" name ${folder})
  if(NOT layer_OF)
    set(layer_OF oxaqrycln)
  endif()
  add_library(oxaqrycln_${name} OBJECT ${layer_SOURCES})
  target_include_directories(oxaqrycln_${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/generated)
  target_link_libraries(oxaqrycln_${name} PRIVATE oxaqrycln_flags)
  set_property(GLOBAL APPEND PROPERTY OXAQRYCLN_OBJECTS_${layer_OF} $<TARGET_OBJECTS:oxaqrycln_${name}>)
endfunction()
