# Windows x86-64 programs on Debian: mingw-w64's compiler with posix threads, and the Qt that
# packaging/windows/qt has built, whose folder is given as PELORA_WINDOWS_QT.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(prefix x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${prefix}-gcc-posix)
set(CMAKE_CXX_COMPILER ${prefix}-g++-posix)
set(CMAKE_RC_COMPILER ${prefix}-windres)

# Appended: building Qt's further modules adds folders of its own.
list(APPEND CMAKE_FIND_ROOT_PATH /usr/${prefix})
if(PELORA_WINDOWS_QT)
  list(APPEND CMAKE_FIND_ROOT_PATH ${PELORA_WINDOWS_QT})
  list(APPEND CMAKE_PREFIX_PATH ${PELORA_WINDOWS_QT})
endif()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PELORA_WINDOWS_QT)

# Qt's own tools (moc, rcc, uic) are this machine's.
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake)
