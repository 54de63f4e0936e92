# cmake -DGDB=... -DPRINTERS=... -DPROGRAM=... -DCOMMANDS=... -DEXPECTED=... -P CompareShown.cmake
#
# Runs gdb's commands and compares what they show, without what gdb says of itself.
cmake_minimum_required(VERSION 3.22)

set(ENV{LC_ALL} C.UTF-8)
execute_process(
    COMMAND ${GDB} -nx -batch -ex "source ${PRINTERS}" -x ${COMMANDS} ${PROGRAM}
    OUTPUT_VARIABLE output
    ERROR_VARIABLE errors)
if(errors MATCHES "ptrace|Operation not permitted|Cannot PTRACE")
    message("skipped: programs must not be traced here")
    return()
endif()
string(REGEX MATCHALL "shown:[^\n]*" shown "${output}")
list(JOIN shown "\n" shown)
file(READ "${EXPECTED}" expected)
if(NOT "${shown}\n" STREQUAL expected)
    message(FATAL_ERROR "Expected:\n${expected}\nShown:\n${shown}\n\n${output}\n${errors}")
endif()
