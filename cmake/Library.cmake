# The library, made of the objects of every layer, and its installation.
get_property(objects GLOBAL PROPERTY OXAQRYCLN_OBJECTS_oxaqrycln)
add_library(oxaqrycln STATIC ${objects})
# Used by the database and the ciphers; on Windows also by the sockets.
set(needed_libraries odbc gcrypt gpg-error)
if(WIN32)
  set(needed_libraries odbc32 gcrypt gpg-error ws2_32)
endif()
foreach(library IN LISTS needed_libraries)
  find_library(OXAQRYCLN_${library}_LIBRARY ${library} REQUIRED)
endforeach()
target_include_directories(oxaqrycln INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
  $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/generated>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/oxaqrycln>)
target_compile_features(oxaqrycln INTERFACE cxx_std_20)
target_link_libraries(oxaqrycln PUBLIC Threads::Threads PRIVATE $<BUILD_INTERFACE:oxaqrycln_flags> ${needed_libraries})
add_library(oxaqrycln::oxaqrycln ALIAS oxaqrycln)

# The shared library of the C interface: the same objects, and those of automation/c. On Windows OXAQryCln.dll is it.
if(NOT WIN32)
  get_property(objects GLOBAL PROPERTY OXAQRYCLN_OBJECTS_c)
  set(exports ${PROJECT_SOURCE_DIR}/automation/c/exports.map)
  add_library(oxaqrycln_c SHARED ${objects})
  set_target_properties(oxaqrycln_c PROPERTIES
    OUTPUT_NAME oxaqrycln EXPORT_NAME c SOVERSION 1 VERSION 1.${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    LINK_DEPENDS ${exports})
  target_link_libraries(oxaqrycln_c PRIVATE oxaqrycln oxaqrycln_flags)
  # It is never unloaded: threads of the host may hold its objects until they end.
  target_link_options(oxaqrycln_c PRIVATE -Wl,--version-script=${exports} -Wl,-z,nodelete)
  # clang leaves what its sanitizers need to the program.
  if(NOT OXAQRYCLN_SANITIZE)
    target_link_options(oxaqrycln_c PRIVATE -Wl,-z,defs)
  endif()
  target_include_directories(oxaqrycln_c INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/automation/c> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  add_library(oxaqrycln::c ALIAS oxaqrycln_c)
endif()

include(Install)
