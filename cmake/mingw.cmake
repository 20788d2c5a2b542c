# Cross-compiling for Windows with the MinGW compilers: what the toolchains of both widths have in common, of which the
# one that includes this says the processor. The variant with POSIX threads is the one whose standard library has the
# <mutex> that GoogleTest wants.
set(CMAKE_SYSTEM_NAME Windows)
set(machine ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32)
set(CMAKE_C_COMPILER ${machine}-gcc-posix)
set(CMAKE_CXX_COMPILER ${machine}-g++-posix)
set(CMAKE_RC_COMPILER ${machine}-windres)
set(CMAKE_AR ${machine}-ar)
set(CMAKE_RANLIB ${machine}-ranlib)

# The compiler's run-time libraries inside, so that only the system's DLLs are needed; no time stamp, so that the same
# sources give the same file.
foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")
endforeach()

set(CMAKE_FIND_ROOT_PATH /usr/${machine})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# ctest runs the programs under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-run.sh)
