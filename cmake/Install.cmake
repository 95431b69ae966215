# Installs the libraries, public headers, the CMake package, the pkg-config file and documents.
# Each tool installs itself, with its manual page and completions.
include(CMakePackageConfigHelpers)

install(TARGETS oxaqrycln EXPORT oxaqrycln)
install(FILES ${PROJECT_SOURCE_DIR}/automation/c/oxaqrycln.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(TARGET oxaqrycln_c)
  install(TARGETS oxaqrycln_c EXPORT oxaqrycln)
endif()

# The headers for page authors, who include them as "component/clsQuery.h". Every other header is internal.
set(public_headers
  client/archive.h
  client/document.h
  client/errors.h
  client/hit_list.h
  client/settings.h
  client/text.h
  client/users.h
  component/clsQuery.h
  component/memory_request.h
  component/objects.h
  component/scripting_context.h
  platform/database/database.h
  values/code_page.h
  values/date_time.h
  values/errors.h
  values/variant.h)
foreach(header IN LISTS public_headers)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/oxaqrycln/${folder})
endforeach()

# find_package(oxaqrycln): the targets oxaqrycln::oxaqrycln, for C++, and oxaqrycln::c.
set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/oxaqrycln)
install(EXPORT oxaqrycln NAMESPACE oxaqrycln:: FILE oxaqryclnTargets.cmake DESTINATION ${package_directory})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/oxaqryclnConfig.cmake.in
  ${PROJECT_BINARY_DIR}/oxaqryclnConfig.cmake INSTALL_DESTINATION ${package_directory})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/oxaqryclnConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/oxaqryclnConfig.cmake ${PROJECT_BINARY_DIR}/oxaqryclnConfigVersion.cmake
  DESTINATION ${package_directory})

# A .pc file derives its prefix from its own location, so that the installed tree may be moved as a whole.
set(pc_directory ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${pc_directory} OUTPUT_VARIABLE pc_to_prefix)
foreach(directory LIBDIR INCLUDEDIR)
  set(path ${CMAKE_INSTALL_FULL_${directory}})
  cmake_path(RELATIVE_PATH path BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} OUTPUT_VARIABLE pc_${directory})
endforeach()
foreach(pc IN ITEMS oxaqrycln.pc oxaqrycln-c.pc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${pc}.in ${PROJECT_BINARY_DIR}/${pc} @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${pc} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

# Documents, and what they link to, in the same places relative to each other as in the sources.
foreach(file IN ITEMS README.md CHANGELOG.md CONTRIBUTING.md LICENSE
                      automation/c/oxaqrycln.h client/archive.h client/users.h component/clsQuery.h
                      userdb/schema.sql userdb/sample.sql)
  cmake_path(GET file PARENT_PATH folder)
  install(FILES ${PROJECT_SOURCE_DIR}/${file} DESTINATION ${CMAKE_INSTALL_DOCDIR}/${folder})
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/bindings/php/oxaqrycln.ini DESTINATION ${CMAKE_INSTALL_DOCDIR}/bindings/php)
install(FILES ${PROJECT_SOURCE_DIR}/docs/oxaqrycln.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3)
install(FILES ${PROJECT_SOURCE_DIR}/docs/oxaqry-log.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN "*.md" PATTERN "*.png")
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${CMAKE_INSTALL_DOCDIR})
# The portal, to copy from. Its pages find the PHP package by opcache.preload.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/portal DESTINATION ${CMAKE_INSTALL_DOCDIR})

# The PHP package; the shared library is where the system's loader finds it, or named in php.ini.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/bindings/php/ DESTINATION ${CMAKE_INSTALL_DATADIR}/php/oxaqrycln)
