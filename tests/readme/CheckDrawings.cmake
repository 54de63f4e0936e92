# cmake -D PROGRAM=<draw_walks> -D WORK=<folder> -D DRAWINGS=<folder> -P CheckDrawings.cmake
#
# The committed drawings are those that the program makes of the engine as it is.
cmake_minimum_required(VERSION 3.22)

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
execute_process(COMMAND "${PROGRAM}" "${WORK}" COMMAND_ERROR_IS_FATAL ANY)
file(GLOB drawn RELATIVE "${WORK}" "${WORK}/*")
file(GLOB committed RELATIVE "${DRAWINGS}" "${DRAWINGS}/walk-*.svg")
if(NOT drawn STREQUAL committed OR drawn STREQUAL "")
    message(FATAL_ERROR "Drawn are ${drawn}, and in ${DRAWINGS} there are ${committed}")
endif()
foreach(name IN LISTS drawn)
    file(READ "${WORK}/${name}" now)
    file(READ "${DRAWINGS}/${name}" then)
    if(NOT now STREQUAL then)
        message(FATAL_ERROR "${DRAWINGS}/${name} shows another walk than ${WORK}/${name}; "
                            "the target update-drawings writes it anew")
    endif()
endforeach()
