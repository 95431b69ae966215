# Toolchain: builds for Windows with Debian's mingw-w64. OXAQRYCLN_MINGW is x86_64-w64-mingw32 or i686-w64-mingw32.
set(CMAKE_SYSTEM_NAME Windows)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES OXAQRYCLN_MINGW)
string(REGEX REPLACE "-.*" "" CMAKE_SYSTEM_PROCESSOR ${OXAQRYCLN_MINGW})
set(CMAKE_C_COMPILER ${OXAQRYCLN_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${OXAQRYCLN_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${OXAQRYCLN_MINGW}-windres)

# Libraries and headers are those for Windows only.
set(CMAKE_FIND_ROOT_PATH /usr/${OXAQRYCLN_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Windows 10; no macros min and max; only the libraries of the system are linked at run time.
add_compile_definitions(_WIN32_WINNT=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX)
add_link_options(-static)
