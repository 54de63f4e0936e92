# cmake -D DOT=<program> -D PROGRAM=<program> -D READS=<text>[;<text>...] -P DrawPicture.cmake
#
# Draws the picture that a program prints. The tool may have nothing to object to, and each text is
# to be read in the drawing.
cmake_minimum_required(VERSION 3.22)

execute_process(
    COMMAND "${PROGRAM}"
    COMMAND "${DOT}" -Tsvg
    RESULTS_VARIABLE results
    OUTPUT_VARIABLE drawing
    ERROR_VARIABLE complaints)
foreach(result IN LISTS results)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${results}\n${complaints}")
    endif()
endforeach()
# A machine without fonts is none of our business.
if(complaints MATCHES "syntax|entity|UTF-8|[Ee]rror")
    message(FATAL_ERROR "${complaints}")
endif()

# As who looks at it reads it; ampersands last, or "&lt;" would be taken for "<".
string(REPLACE "&#39;" "'" drawing "${drawing}")
string(REPLACE "&lt;" "<" drawing "${drawing}")
string(REPLACE "&amp;" "&" drawing "${drawing}")
foreach(text IN LISTS READS)
    string(FIND "${drawing}" "${text}" place)
    if(place EQUAL -1)
        message(FATAL_ERROR "${text} is not to be read in the drawing:\n${drawing}")
    endif()
endforeach()
