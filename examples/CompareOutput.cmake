# cmake -D PROGRAM=<executable> -D EXPECTED=<file> -P CompareOutput.cmake
#
# Runs a program and compares what it prints, as a whole, with a file.
cmake_minimum_required(VERSION 3.22)

execute_process(
    COMMAND "${PROGRAM}"
    RESULT_VARIABLE status
    OUTPUT_VARIABLE printed
    ERROR_VARIABLE complaints)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ended with ${status}.\n${printed}${complaints}")
endif()
file(READ "${EXPECTED}" expected)
if(NOT printed STREQUAL expected)
    message(FATAL_ERROR "${PROGRAM} printed\n${printed}\nwhere ${EXPECTED} has\n${expected}")
endif()
