# cmake -D PAGE=<file> [-D RECIPE=<name>] -D MOST_LINES=<number> -D PROGRAM=<file> -D OUTPUT=<file>
#       -P ExtractProgram.cmake
#
# Writes a program that a page shows, and the output that the page claims for it: its first, or the
# one below the line <!-- recipe: name -->, behind the lines that stand below <!-- beginning -->.
cmake_minimum_required(VERSION 3.22)

include("${CMAKE_CURRENT_LIST_DIR}/Blocks.cmake")

# take_below(<marker> <text variable>): cuts off the text what stands before the marker.
function(take_below marker text_variable)
    string(FIND "${${text_variable}}" "${marker}" start)
    if(start EQUAL -1)
        message(FATAL_ERROR "${PAGE} has no line ${marker}")
    endif()
    string(SUBSTRING "${${text_variable}}" ${start} -1 remaining)
    set(${text_variable} "${remaining}" PARENT_SCOPE)
endfunction()

file(READ "${PAGE}" text)
set(beginning "")
if(DEFINED RECIPE)
    set(rest "${text}")
    take_below("<!-- beginning -->" rest)
    take_block(rest cpp beginning)
    take_below("<!-- recipe: ${RECIPE}" text)
    # What is missing shall not be taken from the next one.
    string(FIND "${text}" "\n## " end)
    string(SUBSTRING "${text}" 0 ${end} text)
endif()
take_block(text cpp program)
take_block(text text output)
if(program STREQUAL "" OR output STREQUAL "")
    message(FATAL_ERROR "${PAGE} has no cpp block ${RECIPE} followed by a text block with its output.")
endif()

string(REGEX MATCHALL "\n" line_ends "${program}")
list(LENGTH line_ends lines)
if(lines GREATER MOST_LINES)
    message(FATAL_ERROR "The program ${RECIPE} of ${PAGE} has ${lines} lines, more than ${MOST_LINES}.")
endif()

file(WRITE "${PROGRAM}" "${beginning}${program}")
file(WRITE "${OUTPUT}" "${output}")
