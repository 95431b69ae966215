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

include(Install)
