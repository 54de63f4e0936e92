# cmake -D README=<file> -D PROGRAM=<file> -D OUTPUT=<file> -P ExtractProgram.cmake
#
# Writes the program that the README shows, and the output that it claims for it.
cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/Blocks.cmake")
set(most_lines 20)

file(READ "${README}" text)
take_block(text cpp program)
take_block(text text output)
if(program STREQUAL "" OR output STREQUAL "")
    message(FATAL_ERROR "${README} has no cpp block followed by a text block with its output.")
endif()

string(REGEX MATCHALL "\n" line_ends "${program}")
list(LENGTH line_ends lines)
if(lines GREATER most_lines)
    message(FATAL_ERROR "The program of ${README} has ${lines} lines, more than ${most_lines}.")
endif()

file(WRITE "${PROGRAM}" "${program}")
file(WRITE "${OUTPUT}" "${output}")
