# The README quotes files of this folder as they are: cmake -P readmeQuote.cmake
file(READ ${CMAKE_CURRENT_LIST_DIR}/../README.md page)
foreach(quoted host.cpp messages/4112-focus-value.txt)
    file(READ ${CMAKE_CURRENT_LIST_DIR}/${quoted} text)
    string(FIND "${page}" "${text}" place)
    if(place EQUAL -1)
        message(FATAL_ERROR "README.md does not quote examples/${quoted} as it is")
    endif()
endforeach()
