# Code blocks of Markdown files, for the scripts beside this one.

# take_block(<text variable> <language> <block variable>): the first code block of the language, cut
# off the text together with everything before it. The block is empty when there is none.
function(take_block text_variable language block_variable)
    set(remaining "${${text_variable}}")
    set(opening "\n```${language}\n")
    string(FIND "${remaining}" "${opening}" start)
    if(start EQUAL -1)
        set(${block_variable} "" PARENT_SCOPE)
        return()
    endif()
    string(LENGTH "${opening}" length)
    math(EXPR start "${start} + ${length}")
    string(SUBSTRING "${remaining}" ${start} -1 remaining)
    string(FIND "${remaining}" "\n```" end)
    string(SUBSTRING "${remaining}" 0 ${end} block)
    string(SUBSTRING "${remaining}" ${end} -1 remaining)
    set(${block_variable} "${block}\n" PARENT_SCOPE)
    set(${text_variable} "${remaining}" PARENT_SCOPE)
endfunction()
