# cmake -D DOT=<program> -D PROGRAM=<program> -P DrawPicture.cmake
#
# Draws the picture that a program prints. Nothing in it may be news to the tool that draws it, and
# what is to be read in the drawing has to be what the elements are called.
cmake_minimum_required(VERSION 3.25)

execute_process(
    COMMAND "${PROGRAM}"
    COMMAND "${DOT}" -Tsvg
    RESULTS_VARIABLE results
    OUTPUT_VARIABLE drawing
    ERROR_VARIABLE complaints)
message(STATUS "${drawing}")
foreach(result IN LISTS results)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${results}\n${complaints}")
    endif()
endforeach()
if(complaints MATCHES "[Ww]arning: .*(syntax|entity|UTF-8)|[Ee]rror")
    message(FATAL_ERROR "${complaints}")
endif()
