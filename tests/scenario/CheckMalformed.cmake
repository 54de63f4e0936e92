# Runs a file that is no scenario: cmake -DRUNNER=... -DFILE=name.scn -P CheckMalformed.cmake
#
# The runner has to end with status 2 and with the one-line message of name.err.
execute_process(
    COMMAND ${RUNNER} ${FILE}
    RESULT_VARIABLE status
    OUTPUT_QUIET
    ERROR_VARIABLE message)
string(REGEX REPLACE "[.]scn$" ".err" expectation ${FILE})
file(READ ${expectation} expected)
if(NOT status STREQUAL "2")
    message(FATAL_ERROR "exit status ${status} instead of 2; message: ${message}")
endif()
if(NOT message STREQUAL expected)
    message(FATAL_ERROR "the message differs\nexpected: ${expected}actual:   ${message}")
endif()
