# GoogleTest for this machine (installed), or for Windows (built from the distribution's sources), and how ctest runs
# a program of tests.

if(WIN32)
    set(VEK_GOOGLETEST_SOURCES /usr/src/googletest CACHE PATH "GoogleTest's sources, for cross-compiling")
    set(BUILD_GMOCK OFF CACHE INTERNAL "")
    set(INSTALL_GTEST OFF CACHE INTERNAL "")
    function(vekGoogleTest) # so that it alone is static
        set(BUILD_SHARED_LIBS OFF)
        add_subdirectory(${VEK_GOOGLETEST_SOURCES} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
    endfunction()
    vekGoogleTest()
else()
    find_package(GTest REQUIRED)
    include(GoogleTest)
endif()

# Registers a GoogleTest program: case by case; under Wine as one test, which counts as skipped when Wine is not there.
function(vekRunningUnderCtest name)
    if(WIN32)
        add_test(NAME ${name} COMMAND ${name})
        set_tests_properties(${name} PROPERTIES SKIP_RETURN_CODE 77)
    else()
        gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60)
    endif()
endfunction()
