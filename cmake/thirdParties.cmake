# What others made and is delivered with what this project makes: its notices (the licences of what is inside), and a
# software bill of materials (SPDX 2.3), for each package. Names, licences and notices are in packaging/notices/, of
# which the version is found here: that of the very headers and compilers that build.

# Of the day of the version.
file(STRINGS ${PROJECT_SOURCE_DIR}/CHANGELOG.md versionLine REGEX "^## ${PROJECT_VERSION}, ")
if(NOT versionLine MATCHES ", ([0-9-]+)$")
    message(FATAL_ERROR "CHANGELOG.md has no line '## ${PROJECT_VERSION}, YEAR-MONTH-DAY'")
endif()
set(VEK_VERSION_DATE ${CMAKE_MATCH_1})

# vekDefined(RESULT HEADER MACROS...): what the header defines them to, joined by points.
function(vekDefined result header)
    set(parts)
    foreach(macro IN LISTS ARGN)
        file(STRINGS "${header}" line REGEX "^# *define ${macro} " LIMIT_COUNT 1)
        string(REGEX REPLACE "^# *define ${macro} +\"?([^ \"/]+).*$" "\\1" value "${line}")
        list(APPEND parts "${value}")
    endforeach()
    list(JOIN parts "." version)
    if(NOT version MATCHES "^[0-9]+[.0-9]*$")
        message(FATAL_ERROR "${header} has no version")
    endif()
    set(${result} ${version} PARENT_SCOPE)
endfunction()

# vekPartVersion(RESULT PART)
function(vekPartVersion result part)
    if(part STREQUAL "nlohmann-json")
        set(macros NLOHMANN_JSON_VERSION_MAJOR NLOHMANN_JSON_VERSION_MINOR NLOHMANN_JSON_VERSION_PATCH)
        foreach(header IN ITEMS detail/abi_macros.hpp json.hpp) # where newer and older ones have it
            if(EXISTS ${VEK_HEADERS_nlohmann}/nlohmann/${header})
                vekDefined(version ${VEK_HEADERS_nlohmann}/nlohmann/${header} ${macros})
                break()
            endif()
        endforeach()
    elseif(part STREQUAL "CLI11")
        vekFindingHeaders(CLI)
        vekDefined(version ${VEK_HEADERS_CLI}/CLI/Version.hpp CLI11_VERSION)
    elseif(part STREQUAL "zlib")
        find_path(ZLIB_INCLUDE_DIR zlib.h)
        vekDefined(version ${ZLIB_INCLUDE_DIR}/zlib.h ZLIB_VERSION)
    elseif(part STREQUAL "emscripten")
        set(version ${EMSCRIPTEN_VERSION})
    elseif(part STREQUAL "fast_float") # whose headers don't tell
        find_file(VEK_FAST_FLOAT_VERSION FastFloatConfigVersion.cmake NO_CMAKE_FIND_ROOT_PATH
                  PATHS /usr/share /usr/lib PATH_SUFFIXES cmake/FastFloat)
        mark_as_advanced(VEK_FAST_FLOAT_VERSION)
        include(${VEK_FAST_FLOAT_VERSION})
        set(version ${PACKAGE_VERSION})
    elseif(part STREQUAL "gcc-runtime")
        set(version ${CMAKE_CXX_COMPILER_VERSION})
    else() # of MinGW
        find_file(VEK_MINGW_VERSION _mingw_mac.h)
        mark_as_advanced(VEK_MINGW_VERSION)
        vekDefined(version ${VEK_MINGW_VERSION} __MINGW64_VERSION_MAJOR __MINGW64_VERSION_MINOR __MINGW64_VERSION_BUGFIX)
    endif()
    set(${result} ${version} PARENT_SCOPE)
endfunction()

# vekBill(NAME INSIDE parts [BESIDE sonames]): into PROJECT_BINARY_DIR/bills/NAME the files NOTICES and NAME.spdx.json.
# Beside it are the libraries that it loads, of which each system has its own version.
function(vekBill name)
    cmake_parse_arguments(bill "" "" "INSIDE;BESIDE" ${ARGN})
    set(notices "What others made and is inside, each under its own licence.\n")
    set(packages)
    set(relations)
    foreach(part IN LISTS bill_INSIDE)
        set(file ${PROJECT_SOURCE_DIR}/packaging/notices/${part}.txt)
        set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
        file(READ ${file} text)
        foreach(field IN ITEMS License Home Copyright)
            string(REGEX MATCH "\n${field}: ([^\n]*)" ignored "\n${text}")
            set(${field} ${CMAKE_MATCH_1})
        endforeach()
        vekPartVersion(version ${part})
        string(REPLACE "Name: ${part}\n" "${part} ${version}\n" notice "${text}")
        string(APPEND notices "\n\n----\n\n${notice}")
        string(APPEND packages ",
    {\"SPDXID\": \"SPDXRef-${part}\", \"name\": \"${part}\", \"versionInfo\": \"${version}\",
     \"downloadLocation\": \"${Home}\", \"filesAnalyzed\": false, \"licenseConcluded\": \"${License}\",
     \"licenseDeclared\": \"${License}\", \"copyrightText\": \"Copyright ${Copyright}\"}")
        string(APPEND relations ",
    {\"spdxElementId\": \"SPDXRef-${name}\", \"relationshipType\": \"CONTAINS\", \"relatedSpdxElement\": \"SPDXRef-${part}\"}")
    endforeach()
    foreach(part IN LISTS bill_BESIDE)
        string(REGEX REPLACE "[^A-Za-z0-9.-]" "-" id ${part}) # as identifiers may be
        string(APPEND packages ",
    {\"SPDXID\": \"SPDXRef-${id}\", \"name\": \"${part}\", \"downloadLocation\": \"NOASSERTION\", \"filesAnalyzed\": false,
     \"licenseConcluded\": \"NOASSERTION\", \"licenseDeclared\": \"NOASSERTION\", \"copyrightText\": \"NOASSERTION\"}")
        string(APPEND relations ",
    {\"spdxElementId\": \"SPDXRef-${name}\", \"relationshipType\": \"DYNAMIC_LINK\", \"relatedSpdxElement\": \"SPDXRef-${id}\"}")
    endforeach()
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/bills/${name}/NOTICES CONTENT "${notices}" @ONLY)
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/bills/${name}/${name}.spdx.json @ONLY CONTENT "{
  \"spdxVersion\": \"SPDX-2.3\", \"dataLicense\": \"CC0-1.0\", \"SPDXID\": \"SPDXRef-DOCUMENT\",
  \"name\": \"${name}-${PROJECT_VERSION}\",
  \"documentNamespace\": \"https://vekparams2ascii.invalid/spdx/${name}-${PROJECT_VERSION}\",
  \"creationInfo\": {\"created\": \"${VEK_VERSION_DATE}T00:00:00Z\", \"creators\": [\"Tool: CMake\"]},
  \"packages\": [
    {\"SPDXID\": \"SPDXRef-${name}\", \"name\": \"${name}\", \"versionInfo\": \"${PROJECT_VERSION}\",
     \"downloadLocation\": \"NOASSERTION\", \"filesAnalyzed\": false, \"licenseConcluded\": \"NOASSERTION\",
     \"licenseDeclared\": \"NOASSERTION\", \"copyrightText\": \"2026 the owner of the vekParams2ASCII project\"}${packages}],
  \"relationships\": [
    {\"spdxElementId\": \"SPDXRef-DOCUMENT\", \"relationshipType\": \"DESCRIBES\", \"relatedSpdxElement\": \"SPDXRef-${name}\"}${relations}]
}
")
endfunction()
