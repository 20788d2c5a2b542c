# How everything here is compiled: C++20, hidden symbols, one switch for instrumentation. All of it is said of targets,
# so that a project which adds this one keeps its own ways.

option(VEK_DEVELOPER "For who develops this project: warnings are errors" OFF)

set(VEK_INSTRUMENT "" CACHE STRING "Instrumentation: empty, sanitizers, coverage or fuzzer")
if(VEK_INSTRUMENT STREQUAL "sanitizers")
    set(instrumentation -fsanitize=address,undefined)
    set(instrumentedCode ${instrumentation} -fno-sanitize-recover=all -fno-omit-frame-pointer)
elseif(VEK_INSTRUMENT STREQUAL "coverage")
    set(instrumentation --coverage)
    set(instrumentedCode ${instrumentation} -O0)
elseif(VEK_INSTRUMENT STREQUAL "fuzzer")
    set(instrumentation -fsanitize=address,undefined)
    set(instrumentedCode -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
elseif(VEK_INSTRUMENT)
    message(FATAL_ERROR "VEK_INSTRUMENT: '${VEK_INSTRUMENT}' is not sanitizers, coverage or fuzzer")
endif()

# The language, the warnings, the instrumentation, and the folder root as the one include path.
function(vekCompiling target)
    set_target_properties(${target} PROPERTIES CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF
                                               C_STANDARD 99
                                               CXX_VISIBILITY_PRESET hidden C_VISIBILITY_PRESET hidden
                                               VISIBILITY_INLINES_HIDDEN ON POSITION_INDEPENDENT_CODE ON)
    if(VEK_DEVELOPER)
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
    endif()
    target_compile_options(${target} PRIVATE ${instrumentedCode})
    target_link_options(${target} PRIVATE ${instrumentation})
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
endfunction()

# Windows looks for a DLL in the folder of the program.
if(WIN32 AND PROJECT_IS_TOP_LEVEL)
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

# The reader of JSON is headers alone, those of this machine; a cross compiler sees no others of its folder.
function(vekReadingJson target)
    find_path(VEK_JSON_FOLDER nlohmann/json.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
    set(folder ${PROJECT_BINARY_DIR}/json)
    file(MAKE_DIRECTORY ${folder})
    file(CREATE_LINK ${VEK_JSON_FOLDER}/nlohmann ${folder}/nlohmann SYMBOLIC)
    target_include_directories(${target} SYSTEM PRIVATE ${folder})
endfunction()
