# cmake -DCOMPILE=... -DSOURCE=... -DMESSAGE=<regular expression> -P ExpectCompileError.cmake
cmake_minimum_required(VERSION 3.22)

separate_arguments(compile UNIX_COMMAND "${COMPILE}")
set(ENV{LC_ALL} C)

execute_process(
    COMMAND ${compile} ${SOURCE}
    RESULT_VARIABLE status
    ERROR_VARIABLE output)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "The twin that should compile does not:\n${output}")
endif()

execute_process(
    COMMAND ${compile} -DEXPECT_ERROR ${SOURCE}
    RESULT_VARIABLE status
    ERROR_VARIABLE output)
if(status EQUAL 0)
    message(FATAL_ERROR "${SOURCE} compiles, but should not")
endif()
if(NOT output MATCHES "${MESSAGE}")
    message(FATAL_ERROR "Refused for another reason than \"${MESSAGE}\":\n${output}")
endif()
