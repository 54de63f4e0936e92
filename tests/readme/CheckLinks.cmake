# cmake -D ROOT=<checkout> -D PAGES=<file;...> -P CheckLinks.cmake
#
# Every relative link of a page leads to a file or a folder of the checkout.
cmake_minimum_required(VERSION 3.22)

set(mistakes "")
foreach(page IN LISTS PAGES)
    file(READ "${ROOT}/${page}" text)
    get_filename_component(folder "${ROOT}/${page}" DIRECTORY)
    string(REGEX REPLACE "```[^`]*```" "" text "${text}")
    # Single brackets would glue the entries of a list together.
    string(REPLACE "](" "<link " text "${text}")
    string(REGEX MATCHALL "<link [^) #]+" targets "${text}")
    foreach(target IN LISTS targets)
        string(REPLACE "<link " "" path "${target}")
        if(NOT path MATCHES "^[a-z]+:" AND NOT EXISTS "${folder}/${path}")
            string(APPEND mistakes "${page}: the link to ${path} leads nowhere\n")
        endif()
    endforeach()
endforeach()

if(NOT mistakes STREQUAL "")
    message(FATAL_ERROR "${mistakes}")
endif()
