# cmake -DROOT=<tests> -P CheckClassNames.cmake
#
# No two classes of the tests have one name: whoever reads of one would have to ask which is meant.
cmake_minimum_required(VERSION 3.22)

file(
    GLOB_RECURSE files
    RELATIVE "${ROOT}"
    "${ROOT}/*.h" "${ROOT}/*.cpp")
list(FILTER files EXCLUDE REGEX "^fuzz/corpus/")
# An enumeration within a class is always named together with that class.
set(definition "^( *class| *struct|enum class| *union) ([A-Za-z0-9_]+)( final)?( *:[^:;][^;]*)?( *{.*)?$")
set(names "")
foreach(file IN LISTS files)
    file(STRINGS "${ROOT}/${file}" lines REGEX "${definition}")
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "${definition}" "\\2" name "${line}")
        # Not those that are specialised.
        if(NOT name STREQUAL "std")
            list(APPEND names ${name})
            list(APPEND "files_of_${name}" ${file})
        endif()
    endforeach()
endforeach()
list(LENGTH names count)
list(REMOVE_DUPLICATES names)
set(problems "")
foreach(name IN LISTS names)
    list(LENGTH "files_of_${name}" times)
    if(times GREATER 1)
        list(JOIN "files_of_${name}" ", " where)
        string(APPEND problems "\n  ${name}: ${where}")
    endif()
endforeach()
message(STATUS "${count} classes in the tests")
if(problems OR count EQUAL 0)
    message(FATAL_ERROR "Names that several classes have:${problems}")
endif()
