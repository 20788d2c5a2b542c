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

# vekDebianPackage(COMPONENT SECTION section MULTIARCH same|foreign DESCRIPTION text [NEEDS components] [LOADS packages]
#                  [CONTROL files] INSIDE parts [BESIDE sonames])
# What is the same for all architectures may be installed beside that of another; a program serves those of others, too.
# The first line of the description is what lists of packages show. Components that are needed are of this very version;
# packages that are loaded are those of libraries that nothing is linked with.
macro(vekDebianPackage component)
    cmake_parse_arguments(package "" "SECTION;MULTIARCH;DESCRIPTION" "NEEDS;LOADS;CONTROL;INSIDE;BESIDE" ${ARGN})
    string(TOUPPER ${component} upper)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${debianNameOf_${component}})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${package_SECTION})
    if(CMAKE_VERSION VERSION_LESS 3.31) # CPack has no field for it, and writes what it is given as it is
        string(APPEND CPACK_DEBIAN_${upper}_PACKAGE_SECTION "\nMulti-Arch: ${package_MULTIARCH}")
    else()
        set(CPACK_DEBIAN_${upper}_PACKAGE_MULTIARCH ${package_MULTIARCH})
    endif()
    set(needed ${package_LOADS})
    foreach(other IN LISTS package_NEEDS)
        list(APPEND needed "${debianNameOf_${other}} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
    endforeach()
    list(JOIN needed ", " CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS)
    set(CPACK_DEBIAN_${upper}_PACKAGE_CONTROL_EXTRA ${package_CONTROL})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${package_DESCRIPTION}")
    if(NOT WIN32)
        vekDocumentFolder(${component} documents)
        if(package_INSIDE)
            set(name ${debianNameOf_${component}})
            vekBill(${name} INSIDE ${package_INSIDE} BESIDE ${package_BESIDE})
            install(DIRECTORY ${PROJECT_BINARY_DIR}/bills/${name}/ DESTINATION ${documents} COMPONENT ${component})
        endif()
        # Of the packages only: `cmake --install` leaves them out.
        install(FILES packaging/copyright ${PROJECT_BINARY_DIR}/changelog.gz ${PROJECT_BINARY_DIR}/changelog.Debian.gz
                DESTINATION ${documents} COMPONENT ${component} EXCLUDE_FROM_ALL)
    endif()
endmacro()

# Packages made twice of the same sources are the same: their files are as old as the version.
include(cmake/thirdParties.cmake)
execute_process(COMMAND env LC_ALL=C date -u -d ${VEK_VERSION_DATE} "+%s;%a, %d %b %Y %T %z" OUTPUT_VARIABLE date
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
list(GET date 0 epoch)
list(GET date 1 packageDate)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/packagingDate.cmake @ONLY CONTENT [[
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
    set(ENV{SOURCE_DATE_EPOCH} @epoch@)
endif()
]])
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_BINARY_DIR}/packagingDate.cmake)

if(WIN32)
    set(CPACK_GENERATOR ZIP) # which knows no date but that of the files
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/dateFiles.cmake @ONLY CONTENT [[
execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} +
                COMMAND_ERROR_IS_FATAL ANY)
]])
    set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_BINARY_DIR}/dateFiles.cmake)
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
    configure_file(packaging/changelog.Debian.in changelog.Debian @ONLY)
    vekCompressed(${PROJECT_BINARY_DIR}/changelog.Debian changelog.Debian)
endif()

# What a package of a shared library tells others: to run ldconfig, and which version of it their programs need by what
# they call. Calls stay the same from version to version while messages are added: who was built with a version needs it.
# vekLibraryControl(COMPONENT TARGET EXPORTS), into libraryControl
function(vekLibraryControl component target exports)
    file(STRINGS ${exports} calls REGEX "^ +[A-Za-z0-9]+;$")
    list(TRANSFORM calls REPLACE "^ +(.*);$" " \\1@Base ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.0\n")
    list(SORT calls)
    string(CONCAT symbols "lib${target}.so.${PROJECT_VERSION_MAJOR} ${debianNameOf_${component}} #MINVER#\n" ${calls})
    set(file ${PROJECT_BINARY_DIR}/control/${component}/symbols)
    file(CONFIGURE OUTPUT ${file} CONTENT "${symbols}")
    set(libraryControl ${PROJECT_SOURCE_DIR}/packaging/triggers ${file} ${withoutScripts} PARENT_SCOPE)
endfunction()

# CPack adds scripts that call ldconfig, where the trigger is Debian's way, unless it hears of others. It says that these
# two do not exist, and goes on.
set(withoutScripts packaging/none/postinst packaging/none/postrm)

set(runTime libstdc++.so.6 libgcc_s.so.1 libc.so.6)
if(WIN32)
    vekBill(vekParams2ASCII INSIDE gcc-runtime mingw-w64 winpthreads nlohmann-json CLI11 zlib)
    install(DIRECTORY ${PROJECT_BINARY_DIR}/bills/vekParams2ASCII/ DESTINATION doc COMPONENT library)
endif()

vekLibraryControl(library vekParams2ASCII vek/api/exports.map)
vekDebianPackage(
    library SECTION libs MULTIARCH same CONTROL ${libraryControl} INSIDE gcc-runtime BESIDE ${runTime}
    DESCRIPTION "messages of laser exposure devices as structures and text
Converts the parameter and status messages of a laser exposure device between
fixed-layout structures and self-describing text that can be sent, logged,
read and edited by hand.
.
This package contains the shared library with its four C functions.")
vekDebianPackage(
    development SECTION libdevel MULTIARCH same NEEDS library INSIDE gcc-runtime
    DESCRIPTION "messages of laser exposure devices (development files)
Converts the parameter and status messages of a laser exposure device between
fixed-layout structures and self-describing text that can be sent, logged,
read and edited by hand.
.
This package contains the headers for C and C++, the library of the C++
structures, the reference of every message, and examples.")
if(VEK_INSPECT)
    vekLibraryControl(inspect vekInspect vek/inspect/exports/exports.map)
    vekDebianPackage(
        inspect SECTION libs MULTIARCH same CONTROL ${libraryControl} INSIDE gcc-runtime nlohmann-json BESIDE ${runTime}
        DESCRIPTION "messages of laser exposure devices as JSON
Tells what stands in a text message of a laser exposure device and what is
wrong with it, for hosts in any language.
.
This package contains the shared library with its three C functions.")
    vekDebianPackage(
        inspectDevelopment SECTION libdevel MULTIARCH same NEEDS inspect development
        DESCRIPTION "messages of laser exposure devices as JSON (development files)
Tells what stands in a text message of a laser exposure device and what is
wrong with it, for hosts in any language.
.
This package contains the header for C and C++, and what CMake and pkg-config
need to find the library.")
    vekDebianPackage(
        vekmsg SECTION utils MULTIARCH foreign LOADS libcurl4 INSIDE gcc-runtime nlohmann-json CLI11
        BESIDE ${runTime} libcurl.so.4 libsqlite3.so.0 libz.so.1 libzstd.so.1
        DESCRIPTION "messages of laser exposure devices on the command line
Shows, checks, mends, changes and compares text messages of laser exposure
devices, alone or amid the lines of a log, and turns them into JSON, tables
and summaries.")
endif()
include(CPack)
