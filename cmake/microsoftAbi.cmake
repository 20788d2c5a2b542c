# Compiles a source for the Microsoft C++ ABI without Microsoft's tools: clang with MinGW's headers, syntax and static
# assertions only. A layout that is asserted for MinGW and compiles here is the one that Microsoft's compiler gives.
#
# Headers that such a source reaches may include the C headers and most of the standard library, but not <memory>,
# <atomic>, <mutex> or the streams. Layouts of the two ABIs differ where a member of a derived class would lie in its
# base's tail padding, and where the class that introduces the virtual table has a member aligned to eight.

find_program(VEK_CLANGXX clang++)

# As a test, in the preset for Windows, whose compiler has the headers.
function(vekCompilingForMicrosoft name source)
    if(NOT VEK_CLANGXX)
        message(WARNING "No clang++: ${name}, the check of the Microsoft layouts, will not run")
        return()
    endif()
    set(folders ${CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES})
    list(FILTER folders EXCLUDE REGEX "/gcc/[^/]+/[^/]+/include(-fixed)?$")
    list(TRANSFORM folders PREPEND -isystem)
    add_test(NAME ${name}
             COMMAND ${VEK_CLANGXX} --target=i686-pc-windows-msvc -std=c++20 -fsyntax-only -Wall -Wextra -Werror
                     -Wno-invalid-offsetof -fno-ms-compatibility -fms-extensions -D_ALLOCA_S_MARKER_SIZE=8
                     -nostdinc++ ${folders} -I${PROJECT_SOURCE_DIR} ${source})
endfunction()
