# For scripts/mutants.sh, given as CMAKE_PROJECT_INCLUDE: after each small change as little as possible is compiled. Every
# source alone, and what most of them include beforehand.

function(vekChangingOften)
    set(common <algorithm> <map> <optional> <string> <string_view> <vector> <nlohmann/json.hpp>)
    foreach(target IN ITEMS vekInspectCore vekmsg inspectTests lspTests)
        target_precompile_headers(${target} PRIVATE ${common})
        set_target_properties(${target} PROPERTIES UNITY_BUILD OFF)
    endforeach()
    target_precompile_headers(vekInspectCore PRIVATE <regex>)
    target_precompile_headers(inspectTests PRIVATE <gtest/gtest.h>)
    target_precompile_headers(lspTests PRIVATE <gtest/gtest.h>)
endfunction()
cmake_language(DEFER CALL vekChangingOften)
