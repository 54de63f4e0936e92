# cmake -DNM=... -DLIBRARY=... -DLIST=... [-DUPDATE=ON] -P CompareSymbols.cmake
#
# Compares the exported names of a library with a list, or writes the list.
cmake_minimum_required(VERSION 3.22)

execute_process(
    COMMAND ${NM} --dynamic --defined-only --demangle --format=posix ${LIBRARY}
    OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)

# A name may hold brackets and semicolons, so lines are cut out by hand instead of as a list.
string(REPLACE ";" "<semicolon>" output "${output}")
string(REPLACE "[" "<open>" output "${output}")
string(REPLACE "]" "<close>" output "${output}")
string(REPLACE "\n" ";" lines "${output}")
set(names "")
foreach(line IN LISTS lines)
    # <name> <kind letter> <address> [<size>]: kind and place differ between compilers.
    string(REGEX REPLACE " [a-zA-Z] [0-9a-f]+( [0-9a-f]+)? *$" "" name "${line}")
    if(NOT name STREQUAL "")
        list(APPEND names "${name}")
    endif()
endforeach()
list(SORT names)
list(REMOVE_DUPLICATES names)

function(readable result text)
    string(REPLACE ";" "\n" text "${text}")
    string(REPLACE "<open>" "[" text "${text}")
    string(REPLACE "<close>" "]" text "${text}")
    string(REPLACE "<semicolon>" ";" text "${text}")
    set(${result}
        "${text}"
        PARENT_SCOPE)
endfunction()

readable(text "${names}")
if(UPDATE)
    file(WRITE "${LIST}" "${text}\n")
    return()
endif()

file(READ "${LIST}" listed)
string(REPLACE "[" "<open>" listed "${listed}")
string(REPLACE "]" "<close>" listed "${listed}")
string(STRIP "${listed}" listed)
string(REPLACE "\n" ";" listed "${listed}")
set(missing ${listed})
list(REMOVE_ITEM missing ${names})
set(unlisted ${names})
list(REMOVE_ITEM unlisted ${listed})
if(missing OR unlisted)
    readable(missing "${missing}")
    readable(unlisted "${unlisted}")
    message(FATAL_ERROR "${LIBRARY} does not export what ${LIST} says; the target ${UPDATE_HINT} "
                        "writes the list anew.\nListed, but not exported:\n${missing}\n"
                        "Exported, but not listed:\n${unlisted}")
endif()
list(LENGTH names count)
message(STATUS "${count} names, all of them listed")
