# cmake -DCOMPILE=<g++ and options> -DDIRECTORY=<of this file> -DWORK=<directory> [-DUPDATE=ON]
#   -P CompareClasses.cmake
#
# Compares GCC's account of the installed classes with the records in DIRECTORY, or writes the
# records. A record holds the classes of the library's namespace, sorted.
cmake_minimum_required(VERSION 3.22)

separate_arguments(compile UNIX_COMMAND "${COMPILE}")
set(dump "${WORK}/classes.dump")
execute_process(COMMAND ${compile} -fdump-lang-class=${dump} ${DIRECTORY}/InstalledClasses.cpp
                        COMMAND_ERROR_IS_FATAL ANY)

# `Vtable for <class>` and its entries, then `Class <class>` and its size. A class without a name is
# part of one that has.
file(STRINGS "${dump}" lines REGEX "^(Class |Vtable for |   size=|[0-9]+ )")
set(modeling_nuv0_model "")
set(modeling_nuv0_traversal "")
set(slots "")
set(slot 0)
foreach(line IN LISTS lines)
    if(line MATCHES "^[0-9]+ +(.*)$")
        string(REPLACE "(int (*)(...))" "" entry "${CMAKE_MATCH_1}")
        # What stands before the type's description is no slot.
        if(entry MATCHES "_ZTI")
            set(slot 0)
            set(slots "")
        else()
            # An abstract class has no destructor that could be called through its table.
            string(REGEX REPLACE "^0$" "(destructor)" entry "${entry}")
            string(REPLACE "__cxa_pure_virtual" "(pure)" entry "${entry}")
            string(APPEND slots "\n    slot ${slot}: ${entry}")
            math(EXPR slot "${slot} + 1")
        endif()
    elseif(line MATCHES "^Class (.*)$")
        set(class "${CMAKE_MATCH_1}")
    elseif(line MATCHES "size=([0-9]+) align=([0-9]+)")
        set(entry "${class}: size ${CMAKE_MATCH_1}, alignment ${CMAKE_MATCH_2}${slots}")
        if(class MATCHES "<unnamed|<lambda")
        elseif(class MATCHES "^nuv::zero::traversal::")
            list(APPEND modeling_nuv0_traversal "${entry}")
        elseif(class MATCHES "^nuv::zero::")
            list(APPEND modeling_nuv0_model "${entry}")
        endif()
        set(slots "")
    else() # a new table
        set(slots "")
    endif()
endforeach()

set(differing "")
foreach(library modeling_nuv0_model modeling_nuv0_traversal)
    list(SORT ${library})
    list(JOIN ${library} "\n" now)
    set(record "${DIRECTORY}/${library}.txt")
    if(UPDATE)
        file(WRITE "${record}" "${now}\n")
        continue()
    endif()
    file(READ "${record}" recorded)
    if(NOT recorded STREQUAL "${now}\n")
        file(WRITE "${WORK}/${library}.txt" "${now}\n")
        execute_process(COMMAND diff -u "${record}" "${WORK}/${library}.txt"
                        OUTPUT_VARIABLE difference)
        string(APPEND differing "${difference}")
    endif()
endforeach()
if(differing)
    message("${differing}")
    message(FATAL_ERROR "Programs that were built before would not fit these classes any more. "
                        "Where that is meant, the target update-abi writes the records anew.")
endif()
