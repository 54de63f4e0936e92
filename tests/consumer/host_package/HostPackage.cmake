# cmake -DSOURCE=... -DPAGE=... -DWORK=... -P HostPackage.cmake
#
# Installs a framework, then runs the commands that the page has for building and installing the library
# over it, below a line `<!-- a library over things -->`, in a folder that holds the sources.
cmake_minimum_required(VERSION 3.22)

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
file(CREATE_LINK "${SOURCE}" "${WORK}/modeling_nuv0_traversal" SYMBOLIC)
execute_process(
    COMMAND ${CMAKE_COMMAND} -S "${CMAKE_CURRENT_LIST_DIR}/framework" -B framework
            "-DLIBRARY_DIRECTORY=${SOURCE}" -DCMAKE_INSTALL_PREFIX=${WORK}/prefix
    COMMAND_ERROR_IS_FATAL ANY
    WORKING_DIRECTORY "${WORK}")
execute_process(
    COMMAND ${CMAKE_COMMAND} --install framework
    COMMAND_ERROR_IS_FATAL ANY
    WORKING_DIRECTORY "${WORK}")

file(READ "${PAGE}" page)
if(NOT page MATCHES "<!-- a library over things -->\n```sh\n([^`]*)```")
    message(FATAL_ERROR "${PAGE} has no commands below <!-- a library over things -->")
endif()
file(WRITE "${WORK}/commands.sh" "set -e\n${CMAKE_MATCH_1}")
# One source: it is the build that is tested.
file(WRITE "${WORK}/unity.cmake" "set(CMAKE_UNITY_BUILD ON)\nset(CMAKE_UNITY_BUILD_BATCH_SIZE 0)\n")
set(ENV{CMAKE_TOOLCHAIN_FILE} "${WORK}/unity.cmake")
execute_process(
    COMMAND sh commands.sh
    COMMAND_ERROR_IS_FATAL ANY
    WORKING_DIRECTORY "${WORK}")
