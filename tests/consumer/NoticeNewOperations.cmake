# cmake -DUNCALLED=<command> -DHEADERS=... -DWORK=... -P NoticeNewOperations.cmake
#
# Gives a header operations that no consumer can know: each has to be named as not called.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
file(COPY "${HEADERS}/" DESTINATION "${WORK}")
file(
    APPEND "${WORK}/traversal/Spec.h"
    "
namespace nuv::zero::traversal {
inline void newFunction() {}
template <class T>
void newTemplate(T&&) {}
class NewClass {
  public:
    explicit NewClass(int);
    ~NewClass();
    void newOperation() const;
    template <class T>
    operator T() const;
    friend bool operator==(NewClass, NewClass);
  private:
    void ofNoConcern();
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
    "7 not called"
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
