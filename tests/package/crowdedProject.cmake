# What the project of a host may have when it adds the library: targets and settings of its own. linuxPackages.sh puts
# this behind that project's first line.
foreach(name demo reference conformance outside)
    add_custom_target(${name})
endforeach()
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_POSITION_INDEPENDENT_CODE OFF)
