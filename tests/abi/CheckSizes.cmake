# cmake -DCOMPILE=<compiler and options> -DDIRECTORY=<of this file> -DWORK=<directory>
#   -P CheckSizes.cmake
#
# Lets a compiler check the recorded sizes and alignments.
cmake_minimum_required(VERSION 3.22)

set(checks "#include \"${DIRECTORY}/InstalledClasses.cpp\"\n")
set(count 0)
foreach(library modeling_nuv0_model modeling_nuv0_traversal)
    file(STRINGS "${DIRECTORY}/${library}.txt" lines REGEX ": size ")
    foreach(line IN LISTS lines)
        string(REGEX MATCH "^(.*): size ([0-9]+), alignment ([0-9]+)$" matched "${line}")
        string(APPEND checks "static_assert(sizeof(${CMAKE_MATCH_1}) == ${CMAKE_MATCH_2});\n"
                             "static_assert(alignof(${CMAKE_MATCH_1}) == ${CMAKE_MATCH_3});\n")
        math(EXPR count "${count} + 1")
    endforeach()
endforeach()
set(source "${WORK}/CheckSizes.cpp")
file(WRITE "${source}" "${checks}")

# Callers hold objects of private classes too, inside of others.
separate_arguments(compile UNIX_COMMAND "${COMPILE} -fno-access-control")
execute_process(COMMAND ${compile} ${source} COMMAND_ERROR_IS_FATAL ANY)
message(STATUS "${count} classes, all of them as recorded")
