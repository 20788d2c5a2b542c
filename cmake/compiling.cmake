# How everything here is compiled: C++20, hidden symbols, one switch for instrumentation. All of it is said of targets,
# so that a project which adds this one keeps its own ways.

option(VEK_DEVELOPER "For who develops this project: warnings are errors" OFF)

set(VEK_INSTRUMENT "" CACHE STRING "Instrumentation: empty, sanitizers, threads, memory, coverage or fuzzer")
if(VEK_INSTRUMENT STREQUAL "sanitizers")
    set(instrumentation -fsanitize=address,undefined)
    set(instrumentedCode ${instrumentation} -fno-sanitize-recover=all -fno-omit-frame-pointer)
elseif(VEK_INSTRUMENT STREQUAL "threads")
    set(instrumentation -fsanitize=thread)
    set(instrumentedCode ${instrumentation} -fno-omit-frame-pointer)
elseif(VEK_INSTRUMENT STREQUAL "memory")
    # The C++ library's own file is not instrumented: what it has ready-made is compiled here instead.
    set(instrumentation -fsanitize=memory)
    set(instrumentedCode ${instrumentation} -fno-sanitize-recover=all -fno-omit-frame-pointer
                         -D_GLIBCXX_EXTERN_TEMPLATE=0)
elseif(VEK_INSTRUMENT STREQUAL "coverage")
    set(instrumentation --coverage)
    set(instrumentedCode ${instrumentation} -O0)
elseif(VEK_INSTRUMENT STREQUAL "fuzzer")
    set(VEK_FUZZ_SANITIZERS address,undefined CACHE STRING "The fuzzers' sanitizers; none: several times the inputs")
    if(VEK_FUZZ_SANITIZERS)
        set(instrumentation -fsanitize=${VEK_FUZZ_SANITIZERS})
    endif()
    set(instrumentedCode ${instrumentation} -fsanitize-coverage=inline-8bit-counters,pc-table -fno-sanitize-recover=all)
elseif(VEK_INSTRUMENT)
    message(FATAL_ERROR "VEK_INSTRUMENT: '${VEK_INSTRUMENT}' is not sanitizers, threads, memory, coverage or fuzzer")
endif()

# The sanitizers are to see each string body that is used after its release, or before it is set.
if("${instrumentation}" MATCHES "address|memory")
    list(APPEND instrumentedCode -DVEK_NO_SPARE_BODIES)
endif()

option(VEK_UNITY "Compile sources several at once: quicker from nothing, slower after a change" OFF)
set(VEK_UNITY_BATCH 8 CACHE STRING "How many are compiled together")
mark_as_advanced(VEK_UNITY_BATCH)

if(VEK_UNITY AND NOT CMAKE_BUILD_TYPE) # the quick build links many programs, which takes this linker half the time
    find_program(VEK_GOLD ld.gold)
    mark_as_advanced(VEK_GOLD)
    if(VEK_GOLD)
        string(APPEND CMAKE_EXE_LINKER_FLAGS " -fuse-ld=gold")
    endif()
endif()

# WebAssembly's code for tables that are moved at loading is slower, and nothing is loaded there.
set(isLoaded ON)
if(EMSCRIPTEN)
    set(isLoaded OFF)
    string(APPEND CMAKE_CXX_FLAGS " -fwasm-exceptions") # what refuses an expression throws; it is caught there
endif()

# The language, the warnings, the instrumentation, and the folder root as the one include path. Whether sources are
# compiled together is VEK_UNITY's to say, not a host's CMAKE_UNITY_BUILD; those of a PROGRAM are, of which nobody takes
# single ones, but for Windows, whose builds see what a source alone lacks.
function(vekCompiling target)
    set(isTogether ${VEK_UNITY})
    if("PROGRAM" IN_LIST ARGN AND NOT WIN32)
        set(isTogether ON)
    endif()
    set_target_properties(${target} PROPERTIES CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF
                                               C_STANDARD 99
                                               CXX_VISIBILITY_PRESET hidden C_VISIBILITY_PRESET hidden
                                               VISIBILITY_INLINES_HIDDEN ON POSITION_INDEPENDENT_CODE ${isLoaded}
                                               UNITY_BUILD ${isTogether} UNITY_BUILD_BATCH_SIZE ${VEK_UNITY_BATCH})
    if(MSVC) # Microsoft's compiler, or clang in its place
        target_compile_options(${target} PRIVATE /utf-8 $<$<BOOL:${VEK_DEVELOPER}>:/W4>)
    elseif(VEK_DEVELOPER)
        target_compile_options(${target} PRIVATE # and not for the resource compiler
                               "$<$<COMPILE_LANGUAGE:C,CXX>:-Wall;-Wextra;-Wpedantic;-Wconversion;-Werror>"
                               # GCC 12 takes "text" + std::to_string(number) for overlapping copies, which it is not.
                               $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict>)
        if(NOT isTogether) # there a file's own names may hide those of another
            target_compile_options(${target} PRIVATE "$<$<COMPILE_LANGUAGE:C,CXX>:-Wshadow>")
        endif()
    endif()
    target_compile_options(${target} PRIVATE ${instrumentedCode})
    target_link_options(${target} PRIVATE ${instrumentation})
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
endfunction()

# What a host loads is compiled as its system's own libraries are: a stack that was written over ends the process, and so
# does a copy beyond an array whose size the compiler knows. Functions lie apart, so that those that nothing there calls
# are left out.
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fstack-clash-protection VEK_HAS_STACK_CLASH_PROTECTION)
function(vekLoadedByHosts)
    if(VEK_INSTRUMENT OR EMSCRIPTEN OR MSVC) # which guards stacks unasked
        return()
    endif()
    foreach(target IN LISTS ARGN)
        target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:C,CXX>:-fstack-protector-strong>)
        if(WIN32) # what the check calls is in a library of its own, which programs with these in them need
            target_link_options(${target} PUBLIC -fstack-protector-strong)
        else()
            target_compile_options(
                ${target} PRIVATE -ffunction-sections -fdata-sections
                                  $<$<BOOL:${VEK_HAS_STACK_CLASH_PROTECTION}>:-fstack-clash-protection>
                                  "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
        endif()
    endforeach()
endfunction()

# A file that is loaded anywhere, and of which nothing can be written over once it is linked.
function(vekHardened target)
    get_target_property(type ${target} TYPE)
    if(WIN32 AND NOT MSVC) # whose linker does so unasked
        target_link_options(${target} PRIVATE $<$<CONFIG:Release>:-s> -Wl,--dynamicbase,--nxcompat
                                              $<$<EQUAL:${CMAKE_SIZEOF_VOID_P},8>:-Wl,--high-entropy-va>)
    elseif(NOT WIN32)
        target_link_options(${target} PRIVATE $<$<STREQUAL:${type},EXECUTABLE>:-pie> -Wl,-z,relro,-z,now,-z,noexecstack
                                              -Wl,--gc-sections)
    endif()
endfunction()

# Windows looks for a DLL in the folder of the program.
if(WIN32 AND PROJECT_IS_TOP_LEVEL)
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
endif()

# vekVersionResource(TARGET FILE DESCRIPTION): on Windows the file tells its version and what it is.
function(vekVersionResource target file description)
    if(NOT WIN32)
        return()
    endif()
    enable_language(RC)
    set(type VFT_DLL)
    if(file MATCHES "exe$")
        set(type VFT_APP)
    endif()
    configure_file(${PROJECT_SOURCE_DIR}/packaging/version.rc.in ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
endfunction()

# The dynamic symbol table holds what the two files name, for Linux and for Windows, and nothing else. On Windows the
# file is named as hosts load it.
function(vekExporting target map def)
    vekHardened(${target})
    if(WIN32)
        target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/${def})
        set_target_properties(${target} PROPERTIES PREFIX "")
        return()
    endif()
    target_link_options(${target} PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/${map} -Wl,--exclude-libs,ALL)
    if(NOT VEK_INSTRUMENT) # clang's sanitizers resolve their symbols in the program
        target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/${map})
endfunction()

# Libraries that are headers alone are those of this machine; a cross compiler sees no others of its folder.
function(vekFindingHeaders library)
    find_path(VEK_HEADERS_${library} ${library} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH ${ARGN})
    mark_as_advanced(VEK_HEADERS_${library})
endfunction()

function(vekUsingHeaders target library)
    vekFindingHeaders(${library} REQUIRED)
    set(folder ${PROJECT_BINARY_DIR}/headers/${library})
    file(MAKE_DIRECTORY ${folder})
    file(CREATE_LINK ${VEK_HEADERS_${library}}/${library} ${folder}/${library} SYMBOLIC)
    target_include_directories(${target} SYSTEM PRIVATE ${folder})
endfunction()
