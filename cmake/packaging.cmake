# The packages that cpack makes: one Debian package for each component, one zip for Windows. A component more needs its
# name in debianNameOf_... (installing.cmake), its install rules, and a vekDebianPackage here.

# Who makes packages answers for them, and says so as for all Debian packages. No mail ever reaches what is called invalid.
set(noContact "vekParams2ASCII (no contact given) <unset@vekparams2ascii.invalid>")
set(ownContact ${noContact})
if(DEFINED ENV{DEBFULLNAME} AND DEFINED ENV{DEBEMAIL})
    set(ownContact "$ENV{DEBFULLNAME} <$ENV{DEBEMAIL}>")
endif()
set(VEK_CONTACT ${ownContact} CACHE STRING "Who answers for the packages: NAME <ADDRESS>")
if(VEK_CONTACT STREQUAL noContact)
    message(STATUS "Packages will name nobody to write to: say -DVEK_CONTACT=\"NAME <ADDRESS>\"")
endif()

set(CPACK_PACKAGE_NAME vekParams2ASCII)
set(CPACK_PACKAGE_VENDOR vekParams2ASCII)
set(CPACK_PACKAGE_CONTACT ${VEK_CONTACT})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each component has its own
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL)

# vekDebianPackage(COMPONENT SECTION section DESCRIPTION text [DEPENDS packages] [CONTROL files])
# The first line of the description is what lists of packages show.
macro(vekDebianPackage component)
    cmake_parse_arguments(package "" "SECTION;DESCRIPTION;DEPENDS" "CONTROL" ${ARGN})
    string(TOUPPER ${component} upper)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${debianNameOf_${component}})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${package_SECTION})
    set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${package_DEPENDS}")
    set(CPACK_DEBIAN_${upper}_PACKAGE_CONTROL_EXTRA ${package_CONTROL})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${package_DESCRIPTION}")
    if(NOT WIN32)
        vekDocumentFolder(${component} documents)
        # Of the packages only: `cmake --install` leaves them out.
        install(FILES packaging/copyright ${PROJECT_BINARY_DIR}/changelog.gz ${PROJECT_BINARY_DIR}/changelog.Debian.gz
                DESTINATION ${documents} COMPONENT ${component} EXCLUDE_FROM_ALL)
    endif()
endmacro()

if(WIN32)
    set(CPACK_GENERATOR ZIP)
else()
    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_DEB_COMPONENT_INSTALL ON)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_RELEASE 0vek1) # below 1, with which a distribution's own package would begin
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
    set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
    vekCompressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog)
    file(STRINGS CHANGELOG.md versionLine REGEX "^## ${PROJECT_VERSION}, ")
    if(NOT versionLine MATCHES ", ([0-9-]+)$")
        message(FATAL_ERROR "CHANGELOG.md has no line '## ${PROJECT_VERSION}, YEAR-MONTH-DAY'")
    endif()
    execute_process(COMMAND date -u -R -d ${CMAKE_MATCH_1} OUTPUT_VARIABLE packageDate OUTPUT_STRIP_TRAILING_WHITESPACE
                    COMMAND_ERROR_IS_FATAL ANY)
    configure_file(packaging/changelog.Debian.in changelog.Debian @ONLY)
    vekCompressed(${PROJECT_BINARY_DIR}/changelog.Debian changelog.Debian)
endif()

# CPack adds scripts that call ldconfig, where the trigger is Debian's way, unless it hears of others. It says that these
# two do not exist, and goes on.
set(withoutScripts packaging/none/postinst packaging/none/postrm)
vekDebianPackage(
    library SECTION libs CONTROL ${PROJECT_SOURCE_DIR}/packaging/triggers ${withoutScripts}
    DESCRIPTION "messages of laser exposure devices as structures and text
Converts the parameter and status messages of a laser exposure device between
fixed-layout structures and self-describing text that can be sent, logged,
read and edited by hand.
.
This package contains the shared library with its four C functions.")
vekDebianPackage(
    development SECTION libdevel
    DEPENDS "libvekparams2ascii${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})"
    DESCRIPTION "messages of laser exposure devices (development files)
Converts the parameter and status messages of a laser exposure device between
fixed-layout structures and self-describing text that can be sent, logged,
read and edited by hand.
.
This package contains the headers for C and C++, the library of the C++
structures, the reference of every message, and examples.")
if(VEK_INSPECT)
    vekDebianPackage(
        inspect SECTION libs CONTROL ${PROJECT_SOURCE_DIR}/packaging/triggers ${withoutScripts}
        DESCRIPTION "messages of laser exposure devices as JSON
Tells what stands in a text message of a laser exposure device and what is
wrong with it, for hosts in any language.
.
This package contains the shared library with its three C functions.")
    vekDebianPackage(
        vekmsg SECTION utils
        DESCRIPTION "messages of laser exposure devices on the command line
Shows, checks, mends, changes and compares text messages of laser exposure
devices, alone or amid the lines of a log, and turns them into JSON, tables
and summaries.")
endif()
include(CPack)
