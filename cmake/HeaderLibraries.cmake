# Libraries that consist of headers only, and so serve every system: nlohmann_json::nlohmann_json, CLI11::CLI11 and, for
# Windows only, those of Boost as Boost::boost. For the folders under the one that includes this.
if(NOT WIN32)
  find_package(nlohmann_json REQUIRED)
  find_package(CLI11 REQUIRED)
  return()
endif()
# Debian has them in /usr/include only, where Linux's own headers would be found as well; so these are links to their
# folders.
set(links ${PROJECT_BINARY_DIR}/header-libraries)
file(MAKE_DIRECTORY ${links})
include_directories(SYSTEM ${links})  # for the layers, which link no libraries
foreach(library nlohmann_json:nlohmann CLI11:CLI Boost:boost)
  string(REGEX MATCH "^[^:]+" name ${library})
  string(REGEX MATCH "[^:]+$" folder ${library})
  if(NOT IS_DIRECTORY /usr/include/${folder})
    message(FATAL_ERROR "There is no /usr/include/${folder}; install nlohmann-json3-dev, libcli11-dev and libboost1.81-dev")
  endif()
  file(CREATE_LINK /usr/include/${folder} ${links}/${folder} SYMBOLIC)
  string(REPLACE "Boost::Boost" "Boost::boost" target ${name}::${name})
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} INTERFACE ${links})
endforeach()
