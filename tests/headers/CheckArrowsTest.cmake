# cmake -DCHECK=<CheckArrows.cmake> -DWORK=... -P CheckArrowsTest.cmake
#
# A small house, first in order, then with one arrow of each kind that must not be.
cmake_minimum_required(VERSION 3.22)

file(REMOVE_RECURSE "${WORK}")
set(table "from the top: up down
up: traversal/*
down: model/*
height of down: 2
")
function(write file)
    list(JOIN ARGN "\"\n#include \"" text)
    file(WRITE "${WORK}/${file}" "#pragma once\n#include <vector>\n#include \"${text}\"\n")
endfunction()
function(expect result text)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -DROOT=${WORK} -DTABLE=${WORK}/floors.txt -P ${CHECK}
        RESULT_VARIABLE status
        OUTPUT_VARIABLE output
        ERROR_VARIABLE output)
    string(FIND "${output}" "${text}" place)
    if(place EQUAL -1
       OR (status EQUAL 0 AND NOT result STREQUAL "accepted")
       OR (NOT status EQUAL 0 AND NOT result STREQUAL "refused"))
        message(FATAL_ERROR "Not ${result} with \"${text}\":\n${output}")
    endif()
endfunction()

file(WRITE "${WORK}/floors.txt" "${table}")
file(WRITE "${WORK}/model/Base.h" "#pragma once\n")
file(WRITE "${WORK}/model/Middle.h" "#pragma once\n#include \"Base.h\"\n")
file(WRITE "${WORK}/model/Middle.cpp" "#include \"model/Middle.h\"\n")
file(WRITE "${WORK}/model/Base.cpp" "#include \"model/Base.h\"\n")
write(traversal/Top.h ../model/Middle.h ../model/Base.h)
write(traversal/Top.cpp traversal/Top.h)
expect(accepted "6 files, 6 arrows")

write(model/Base.cpp model/Base.h model/Middle.h)
expect(refused "up: model/Base.cpp (1) includes model/Middle.h (2)")
write(model/Base.cpp model/Base.h traversal/Top.h)
expect(refused "up: model/Base.cpp (down) includes traversal/Top.h (up)")
write(model/Base.cpp model/Base.h)

write(traversal/Other.h Top.h)
write(traversal/Top.h ../model/Middle.h Other.h)
expect(refused "circle: traversal/Other.h includes traversal/Top.h")
write(traversal/Top.h model/Middle.h)
expect(refused "traversal/Top.h includes model/Middle.h from the root")
write(traversal/Top.h ../model/Middle.h)
expect(accepted "7 files, 6 arrows")

write(model/Third.h Middle.h)
expect(refused "down has rooms 3 high, 2 at most were meant")
file(REMOVE "${WORK}/model/Third.h")
write(model/Base.cpp model/Gone.h)
expect(refused "model/Base.cpp includes model/Gone.h, which is no file of the house")
