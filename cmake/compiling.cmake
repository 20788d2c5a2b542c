# How everything here is compiled: C++20, warnings as errors, hidden symbols, and one switch for instrumentation.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 99)
if(NOT EMSCRIPTEN) # nothing is loaded there
    set(CMAKE_POSITION_INDEPENDENT_CODE ON)
endif()
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(VEK_INSTRUMENT "" CACHE STRING "Instrumentation: empty, sanitizers, coverage or fuzzer")
if(VEK_INSTRUMENT STREQUAL "sanitizers")
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
elseif(VEK_INSTRUMENT STREQUAL "coverage")
    add_compile_options(--coverage -O0)
    add_link_options(--coverage)
elseif(VEK_INSTRUMENT STREQUAL "fuzzer")
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
    add_link_options(-fsanitize=address,undefined)
elseif(VEK_INSTRUMENT)
    message(FATAL_ERROR "VEK_INSTRUMENT: '${VEK_INSTRUMENT}' is not sanitizers, coverage or fuzzer")
endif()

# Warnings as errors and the folder root as the one include path.
function(vekCompiling target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
endfunction()

# Windows looks for a DLL in the folder of the program.
if(WIN32)
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
endif()

# The dynamic symbol table holds what the two files name, for Linux and for Windows, and nothing else. On Windows the
# file is named as hosts load it.
function(vekExporting target map def)
    if(WIN32)
        target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/${def})
        set_target_properties(${target} PROPERTIES PREFIX "")
        target_link_options(${target} PRIVATE $<$<CONFIG:Release>:-s>)
        return()
    endif()
    target_link_options(${target} PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/${map} -Wl,--exclude-libs,ALL)
    if(NOT VEK_INSTRUMENT) # clang's sanitizers resolve their symbols in the program
        target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/${map})
endfunction()

# Libraries that are headers alone are those of this machine; a cross compiler sees no others of its folder.
function(vekUsingHeaders target library)
    find_path(VEK_HEADERS_${library} ${library} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
    mark_as_advanced(VEK_HEADERS_${library})
    set(folder ${PROJECT_BINARY_DIR}/headers/${library})
    file(MAKE_DIRECTORY ${folder})
    file(CREATE_LINK ${VEK_HEADERS_${library}}/${library} ${folder}/${library} SYMBOLIC)
    target_include_directories(${target} SYSTEM PRIVATE ${folder})
endfunction()
