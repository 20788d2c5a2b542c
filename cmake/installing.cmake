# What an installation holds: the shared libraries, the headers hosts include, the static library behind the C++
# structures, a CMake package, pkg-config files, manual pages, documentation and examples. The packages made of them
# are in packaging.cmake.

# As Debian's own tools do, for any prefix: lib/x86_64-linux-gnu.
if(PROJECT_IS_TOP_LEVEL AND EXISTS /etc/debian_version AND CMAKE_LIBRARY_ARCHITECTURE AND NOT CMAKE_CROSSCOMPILING)
    set(CMAKE_INSTALL_LIBDIR lib/${CMAKE_LIBRARY_ARCHITECTURE} CACHE PATH "Libraries, below the prefix")
endif()
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set_target_properties(vekCpp PROPERTIES EXPORT_NAME cpp)
target_include_directories(vekParams2ASCII INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_include_directories(vekTypes INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

install(TARGETS vekParams2ASCII vekTypes vekCpp EXPORT vekParams2ASCIITargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

# What belongs to vekInspect is a component of its own for those who run it, and one for those who build with it.
if(VEK_INSPECT)
    target_include_directories(vekInspect INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    install(TARGETS vekInspect EXPORT vekInspectTargets
            RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT inspect
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT inspect NAMELINK_COMPONENT inspectDevelopment
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT inspectDevelopment)
endif()

foreach(header IN LISTS VEK_PUBLIC_HEADERS)
    get_filename_component(folder ${header} DIRECTORY)
    set(component development)
    if(header MATCHES "^vek/inspect/")
        if(NOT VEK_INSPECT)
            continue()
        endif()
        set(component inspectDevelopment)
    endif()
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder} COMPONENT ${component})
endforeach()

# Microsoft's linker takes MinGW's import libraries, but not with /SAFESEH, which it sets itself for 32 bits.
# vekImportLibrary(COMPONENT NAME DEF): NAME.lib for it, and the file that it is made from.
function(vekImportLibrary component name def)
    set(machine i386:x86-64)
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
        set(machine i386)
    endif()
    set(library ${PROJECT_BINARY_DIR}/${name}.lib)
    add_custom_command(OUTPUT ${library} DEPENDS ${PROJECT_SOURCE_DIR}/${def} VERBATIM
                       COMMAND ${VEK_DLLTOOL} -m ${machine} -D ${name}.dll -d ${PROJECT_SOURCE_DIR}/${def} -l ${library})
    add_custom_target(${name}Import ALL DEPENDS ${library})
    install(FILES ${library} ${PROJECT_SOURCE_DIR}/${def} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${component})
endfunction()
if(WIN32 AND BUILD_SHARED_LIBS)
    find_program(VEK_DLLTOOL llvm-dlltool REQUIRED)
    mark_as_advanced(VEK_DLLTOOL)
    vekImportLibrary(development vekParams2ASCII vek/api/vekParams2ASCII.def)
    if(VEK_INSPECT)
        vekImportLibrary(inspectDevelopment vekInspect vek/inspect/exports/vekInspect.def)
    endif()

    # What of vekTypes is no public header, for compilers of another C++ ABI.
    install(FILES packaging/vekTypes/CMakeLists.txt DESTINATION src/vekTypes COMPONENT development)
    file(GLOB_RECURSE privateHeaders RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS vek/vek_std/*.hpp vek/text/*.hpp
         vek/records/*.hpp vek/api/*.hpp)
    list(REMOVE_ITEM privateHeaders ${VEK_PUBLIC_HEADERS})
    foreach(file IN LISTS typeSources privateHeaders)
        get_filename_component(folder ${file} DIRECTORY)
        install(FILES ${file} DESTINATION src/vekTypes/${folder} COMPONENT development)
    endforeach()
endif()

# Where a component's documents are: on Linux as Debian names the folder, by its package.
set(debianNameOf_library libvekparams2ascii${PROJECT_VERSION_MAJOR})
set(debianNameOf_development libvekparams2ascii-dev)
set(debianNameOf_inspectDevelopment libvekinspect-dev)
set(debianNameOf_inspect libvekinspect${PROJECT_VERSION_MAJOR})
set(debianNameOf_vekmsg vekmsg)
function(vekDocumentFolder component result)
    set(folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/${debianNameOf_${component}})
    if(WIN32)
        set(folder doc)
    endif()
    set(${result} ${folder} PARENT_SCOPE)
endfunction()

set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/vekParams2ASCII)
configure_file(packaging/vekParams2ASCIIConfig.cmake.in vekParams2ASCIIConfig.cmake @ONLY)
write_basic_package_version_file(vekParams2ASCIIConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/vekParams2ASCIIConfig.cmake ${PROJECT_BINARY_DIR}/vekParams2ASCIIConfigVersion.cmake
        DESTINATION ${packageFolder} COMPONENT development)
install(EXPORT vekParams2ASCIITargets NAMESPACE vekParams2ASCII:: DESTINATION ${packageFolder} COMPONENT development)
if(VEK_INSPECT)
    install(EXPORT vekInspectTargets NAMESPACE vekParams2ASCII:: DESTINATION ${packageFolder}
            COMPONENT inspectDevelopment)
endif()

# Found from where the file lies, so that an installation can be moved. Static libraries need the C++ library named,
# and on Windows the one that looks after stacks.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig
           OUTPUT_VARIABLE pcPrefix)
set(pcCppLibrary)
if(NOT BUILD_SHARED_LIBS)
    set(pcCppLibrary " -lstdc++ -lm")
endif()
if(WIN32)
    string(APPEND pcCppLibrary " -fstack-protector-strong")
endif()

# vekPkgConfig(COMPONENT NAME)
function(vekPkgConfig component name)
    configure_file(${PROJECT_SOURCE_DIR}/packaging/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${component})
endfunction()
vekPkgConfig(development vekParams2ASCII)
if(VEK_INSPECT)
    vekPkgConfig(inspectDevelopment vekInspect)
endif()

# vekCompressed(FILE NAME): FILE as NAME.gz in the build folder, the same bytes each time.
function(vekCompressed file name)
    set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    execute_process(COMMAND gzip -9nc ${file} OUTPUT_FILE ${PROJECT_BINARY_DIR}/${name}.gz COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# vekManualPage(COMPONENT FILE ALIASES...): a page of which FILE.in is the source; on Windows to be read as it is.
function(vekManualPage component page)
    set(out ${PROJECT_BINARY_DIR}/${page})
    configure_file(${PROJECT_SOURCE_DIR}/packaging/${page}.in ${out} @ONLY)
    if(WIN32)
        install(FILES ${out} DESTINATION doc COMPONENT ${component})
        return()
    endif()
    cmake_path(GET page EXTENSION LAST_ONLY extension)
    string(SUBSTRING ${extension} 1 -1 section)
    vekCompressed(${out} ${page})
    set(pages ${out}.gz)
    foreach(alias IN LISTS ARGN)
        file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/${alias} CONTENT ".so man${section}/${page}\n")
        vekCompressed(${PROJECT_BINARY_DIR}/${alias} ${alias})
        list(APPEND pages ${PROJECT_BINARY_DIR}/${alias}.gz)
    endforeach()
    install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT ${component})
endfunction()

vekManualPage(development vekParams2ASCII.3 vekStrToVal.3 vekValToStr.3 vekParamsDelete.3 vekParamsDeleteStruct.3)
if(VEK_INSPECT)
    vekManualPage(inspectDevelopment vekInspect.3 vekInspectToJson.3 vekInspectFromJson.3 vekInspectCatalogue.3)
endif()
vekDocumentFolder(development documents)
install(FILES README.md SECURITY.md DESTINATION ${documents} COMPONENT development)
install(DIRECTORY docs examples DESTINATION ${documents} COMPONENT development
        PATTERN examples/CMakeLists.txt EXCLUDE)
if(WIN32)
    install(FILES CHANGELOG.md packaging/copyright DESTINATION ${documents} COMPONENT library)
endif()

if(PROJECT_IS_TOP_LEVEL) # packages are of one project only
    include(cmake/packaging.cmake)
endif()
