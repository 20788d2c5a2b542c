# 32-bit x86 Windows (preset mingw32). Doubles are rounded to doubles after every operation, as on 64-bit targets: no x87.
# Hosts' stacks are aligned to four bytes only, SSE needs sixteen.
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_CXX_FLAGS_INIT "${CMAKE_C_FLAGS_INIT}")
