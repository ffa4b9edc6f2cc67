# Builds for 64-bit Windows on Linux with mingw-w64, and runs the result under Wine:
# cmake -S . -B build/windows -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# Only the C++ library of the "-posix" compilers has std::thread and std::mutex.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Programs are taken from this system; headers and libraries never are.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# A static Qt for Windows; packaging/windows/qt says where one is. The tools (moc, rcc)
# are this system's. Cached, so that a later configuration finds it again.
set(QT_WINDOWS "$ENV{QT_WINDOWS}" CACHE PATH "Static Qt 6 for Windows; the forms need it")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QT_WINDOWS)
if(QT_WINDOWS)
  list(APPEND CMAKE_FIND_ROOT_PATH ${QT_WINDOWS})
  list(APPEND CMAKE_PREFIX_PATH ${QT_WINDOWS})
  set(QT_HOST_PATH /usr)
  set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake)
endif()

# One file per program: the compiler's own DLLs are not on any PATH.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

# Each run creates a Wine prefix of its own, which takes seconds. So run a whole test
# program at once, not one test.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../tests/wine/run)
