# cmake -DBUILD=... -DPREFIX=... -P Install.cmake
#
# Installs into an empty prefix, and not where it was told to stay: an installed tree can be moved.
cmake_minimum_required(VERSION 3.22)

file(REMOVE_RECURSE "${PREFIX}" "${PREFIX}-first")
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX}-first
                        COMMAND_ERROR_IS_FATAL ANY)
file(RENAME "${PREFIX}-first" "${PREFIX}")
