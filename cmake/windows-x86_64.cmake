# Cross-building for 64-bit Windows with Debian's g++-mingw-w64-x86-64-posix.
# IXOVPN_WINDOWS_QT names the folder of a Qt 5.15 built with the same compiler; without it, the one
# that scripts/windows-qt has built is used.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES IXOVPN_WINDOWS_QT)
if(NOT IXOVPN_WINDOWS_QT)
  execute_process(COMMAND "${CMAKE_CURRENT_LIST_DIR}/../scripts/windows-qt" --cached
                  OUTPUT_VARIABLE qt OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "There is no Qt for Windows yet: scripts/windows-qt builds it")
  endif()
  set(IXOVPN_WINDOWS_QT "${qt}" CACHE PATH "Qt for Windows" FORCE)
endif()

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 "${IXOVPN_WINDOWS_QT}")
set(CMAKE_PREFIX_PATH "${IXOVPN_WINDOWS_QT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
