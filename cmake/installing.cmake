# What an installation holds: the shared library, the headers hosts include, the static library behind the C++
# structures, a CMake package and a pkg-config file; and the packages made of them.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set_target_properties(vekCpp PROPERTIES EXPORT_NAME cpp)
target_include_directories(vekParams2ASCII INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_include_directories(vekTypes INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

install(TARGETS vekParams2ASCII vekTypes vekCpp EXPORT vekParams2ASCIITargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

install(DIRECTORY vek DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
        FILES_MATCHING PATTERN *.h PATTERN *.hpp PATTERN private EXCLUDE REGEX "vek/inspect/.*\\.hpp$" EXCLUDE)
if(WIN32)
    install(FILES vek/api/vekParams2ASCII.def DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
endif()

set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/vekParams2ASCII)
install(EXPORT vekParams2ASCIITargets NAMESPACE vekParams2ASCII:: DESTINATION ${packageFolder} COMPONENT development
        FILE vekParams2ASCIIConfig.cmake)
write_basic_package_version_file(vekParams2ASCIIConfigVersion.cmake COMPATIBILITY SameMajorVersion)
# Found from where the file lies, so that an installation can be moved.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig
           OUTPUT_VARIABLE pcPrefix)
configure_file(packaging/vekParams2ASCII.pc.in vekParams2ASCII.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vekParams2ASCIIConfigVersion.cmake DESTINATION ${packageFolder}
        COMPONENT development)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vekParams2ASCII.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)

set(CPACK_PACKAGE_NAME vekParams2ASCII)
set(CPACK_PACKAGE_VENDOR vekParams2ASCII)
set(CPACK_PACKAGE_CONTACT "The vekParams2ASCII maintainers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development vekmsg)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
else()
    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_DEB_COMPONENT_INSTALL ON)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libvekparams2ascii${PROJECT_VERSION_MAJOR})
    set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
    set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvekparams2ascii-dev)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
        "libvekparams2ascii${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION})")
    set(CPACK_DEBIAN_VEKMSG_PACKAGE_NAME vekmsg)
    set(CPACK_DEBIAN_VEKMSG_PACKAGE_SECTION utils)
    set(CPACK_COMPONENT_VEKMSG_DESCRIPTION "Messages of a laser exposure device for people: shown, checked, mended")
endif()
if(PROJECT_IS_TOP_LEVEL) # packages are of one project only
    include(CPack)
endif()
