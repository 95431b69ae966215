# The library itself, static and shared, from the objects of every layer; installation and the CMake package.
get_property(layers GLOBAL PROPERTY OXAQRYCLN_LAYERS)
set(objects "")
foreach(layer IN LISTS layers)
  list(APPEND objects $<TARGET_OBJECTS:${layer}>)
endforeach()

add_library(oxaqrycln_static STATIC ${objects})
add_library(oxaqrycln SHARED ${objects})
set_target_properties(oxaqrycln_static PROPERTIES OUTPUT_NAME oxaqrycln EXPORT_NAME oxaqrycln_static)
set_target_properties(oxaqrycln PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
# A lookup thread may outlive the last instance; the code it runs must stay.
target_link_options(oxaqrycln PRIVATE -Wl,-z,nodelete)
# What the platform's database and ciphers stand on.
set(needed_libraries odbc gcrypt gpg-error)
foreach(library IN LISTS needed_libraries)
  find_library(OXAQRYCLN_${library}_LIBRARY ${library} REQUIRED)
endforeach()
foreach(library oxaqrycln oxaqrycln_static)
  target_include_directories(${library} INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/generated>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/oxaqrycln>)
  target_compile_features(${library} INTERFACE cxx_std_20)
  target_link_libraries(${library} PUBLIC Threads::Threads PRIVATE
    $<BUILD_INTERFACE:oxaqrycln_flags> ${needed_libraries})
endforeach()
add_library(oxaqrycln::oxaqrycln ALIAS oxaqrycln)
add_library(oxaqrycln::oxaqrycln_static ALIAS oxaqrycln_static)

include(Install)
