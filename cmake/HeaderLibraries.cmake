# Libraries that consist of headers only, and so serve every system: nlohmann_json::nlohmann_json and CLI11::CLI11. For
# the folders under the one that includes this.
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
foreach(library nlohmann_json:nlohmann CLI11:CLI)
  string(REGEX MATCH "^[^:]+" name ${library})
  string(REGEX MATCH "[^:]+$" folder ${library})
  if(NOT IS_DIRECTORY /usr/include/${folder})
    message(FATAL_ERROR "There is no /usr/include/${folder}; install nlohmann-json3-dev and libcli11-dev")
  endif()
  file(CREATE_LINK /usr/include/${folder} ${links}/${folder} SYMBOLIC)
  add_library(${name}::${name} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${name}::${name} INTERFACE ${links})
endforeach()
