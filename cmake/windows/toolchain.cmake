# Debian's mingw-w64 with POSIX threads: programs for Windows 10 and later on x86-64, made on Linux. Everything is linked
# into them; they need the libraries of Windows alone.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(target x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${target}-gcc-posix)
set(CMAKE_CXX_COMPILER ${target}-g++-posix)
set(CMAKE_RC_COMPILER ${target}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${target})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER) # node, npm and Python run here
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Unaligned moves: the stack is aligned to 16 bytes on Windows, and the compiler keeps vectors of 32 and 64 bytes there
# with moves that want 32 and 64 (GCC bug 54412). On the processors that have such vectors both are equally fast.
set(flags "-Wa,-muse-unaligned-vector-move -D__USE_MINGW_ANSI_STDIO=1 -D_WIN32_WINNT=0x0A00")
set(CMAKE_C_FLAGS_INIT "${flags}")
set(CMAKE_CXX_FLAGS_INIT "${flags}")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_EXE_LINKER_FLAGS_RELEASE_INIT "-s")
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine.sh ${CMAKE_BINARY_DIR})
