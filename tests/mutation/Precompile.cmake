# Most of a compilation's time goes into the standard library's headers, and mutants compile often.

function(modeling_nuv0_precompile_directory directory)
    get_property(targets DIRECTORY "${directory}" PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target IN LISTS targets)
        get_target_property(type ${target} TYPE)
        if(NOT type MATCHES "EXECUTABLE|OBJECT_LIBRARY")
            continue()
        endif()
        set(headers <algorithm> <functional> <memory> <optional> <ranges> <string> <unordered_map>
                    <unordered_set> <variant> <vector>)
        if(target MATCHES "_tests$")
            list(APPEND headers <gtest/gtest.h>)
        endif()
        target_precompile_headers(${target} PRIVATE ${headers})
    endforeach()
    get_property(subdirectories DIRECTORY "${directory}" PROPERTY SUBDIRECTORIES)
    foreach(subdirectory IN LISTS subdirectories)
        modeling_nuv0_precompile_directory("${subdirectory}")
    endforeach()
endfunction()

cmake_language(DEFER CALL modeling_nuv0_precompile_directory "${CMAKE_CURRENT_SOURCE_DIR}")
