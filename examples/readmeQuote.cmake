# The README shows host.cpp as it is: cmake -P readmeQuote.cmake
file(READ ${CMAKE_CURRENT_LIST_DIR}/host.cpp program)
file(READ ${CMAKE_CURRENT_LIST_DIR}/../README.md page)
string(FIND "${page}" "${program}" place)
if(place EQUAL -1)
    message(FATAL_ERROR "README.md does not quote examples/host.cpp as it is")
endif()
