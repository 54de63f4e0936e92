# cmake -DUNCALLED=<command> -DHEADERS=... -DWORK=... -P NoticeNewOperations.cmake
#
# Gives the headers operations that no consumer can know: each has to be named as not called, but
# nothing that cannot be called.
cmake_minimum_required(VERSION 3.22)

file(REMOVE_RECURSE "${WORK}")
file(COPY "${HEADERS}/" DESTINATION "${WORK}")

# In a class beside operations that are called, one of its name among them; in a class template; in a
# class that a class holds.
file(READ "${WORK}/traversal/Spec.h" spec)
string(REPLACE "additiveTraversal();" "additiveTraversal();
    static void additiveTraversal(int);
    void newMember() const;" spec "${spec}")
file(WRITE "${WORK}/traversal/Spec.h" "${spec}")
file(READ "${WORK}/traversal/support/FlatMap.h" map)
string(REPLACE "void reserveOne() {" "void newInTemplate() {}
    void reserveOne() {" map "${map}")
string(REPLACE "bool isTaken() const" "void newInside() {}
        bool isTaken() const" map "${map}")
file(WRITE "${WORK}/traversal/support/FlatMap.h" "${map}")

# In a header of its own, which no other includes.
file(
    WRITE "${WORK}/traversal/New.h"
    "
#pragma once
namespace nuv::zero::traversal {
inline void newFunction() {}
template <class T>
void newTemplate(T&&) {}
class NewClass {
  public:
    explicit NewClass(int);
    ~NewClass();
    void newOperation() const;
    void newDeleted() = delete;
    template <class T>
    operator T() const;
    friend bool operator==(NewClass, NewClass);
  private:
    void newPrivate();
};
}
")
execute_process(
    COMMAND ${UNCALLED} "${WORK}"
    RESULT_VARIABLE status
    OUTPUT_VARIABLE output COMMAND_ECHO STDOUT)
if(status EQUAL 0)
    message(FATAL_ERROR "New operations were not noticed:\n${output}")
endif()
foreach(
    name
    "Spec::additiveTraversal: void (int)"
    "Spec::newMember: "
    "FlatMap::newInTemplate: "
    "FlatMap::Place::newInside: "
    "::newFunction:"
    "::newTemplate:"
    "NewClass::NewClass: "
    "NewClass::~NewClass: "
    "NewClass::newOperation: "
    "NewClass::operator type"
    "NewClass::operator==: ")
    string(FIND "${output}" "${name}" place)
    if(place EQUAL -1)
        message(FATAL_ERROR "\"${name}\" was not noticed:\n${output}")
    endif()
endforeach()
foreach(name newDeleted newPrivate)
    string(FIND "${output}" "${name}" place)
    if(NOT place EQUAL -1)
        message(FATAL_ERROR "\"${name}\" can be called by nobody:\n${output}")
    endif()
endforeach()
