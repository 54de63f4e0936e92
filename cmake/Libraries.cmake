# How the libraries are built, and what those who link them have to know of it.
include(CheckCXXSourceCompiles)

# Shared unless the build says otherwise. A program may link them as archives as well, once: two
# copies in one process would each have meta-classes of their own, and handles of the one would not
# be equal to handles of the other.
set(MODELING_NUV0_LIBRARY_TYPE SHARED)
set(MODELING_NUV0_USAGE_DEFINITIONS "")
if(DEFINED BUILD_SHARED_LIBS AND NOT BUILD_SHARED_LIBS)
    set(MODELING_NUV0_LIBRARY_TYPE STATIC)
    list(APPEND MODELING_NUV0_USAGE_DEFINITIONS MODELING_NUV0_STATIC)
endif()

# In these modes, containers and strings of the standard library are other types than elsewhere.
check_cxx_source_compiles(
    "#include <cstddef>
     #if !defined(_GLIBCXX_DEBUG)
     #error plain
     #endif
     int main() {}" MODELING_NUV0_HAS_DEBUG_CONTAINERS)
check_cxx_source_compiles(
    "#include <cstddef>
     #if !defined(_GLIBCXX_USE_CXX11_ABI) || _GLIBCXX_USE_CXX11_ABI
     #error plain
     #endif
     int main() {}" MODELING_NUV0_HAS_OLD_STRINGS)
if(MODELING_NUV0_HAS_DEBUG_CONTAINERS)
    list(APPEND MODELING_NUV0_USAGE_DEFINITIONS MODELING_NUV0_DEBUG_CONTAINERS)
endif()
if(MODELING_NUV0_HAS_OLD_STRINGS)
    list(APPEND MODELING_NUV0_USAGE_DEFINITIONS MODELING_NUV0_OLD_STRINGS)
endif()

# Also for what compiles our sources without linking the libraries.
target_compile_definitions(modeling_nuv0_flags INTERFACE ${MODELING_NUV0_USAGE_DEFINITIONS})

# Where headers go. Those who write <modeling_nuv0_traversal/traversal/Spec.h> get this one, whatever
# other folder named `traversal` they have; "traversal/Spec.h" is for those who have none.
if(MODELING_NUV0_SUFFIX)
    set(MODELING_NUV0_INSTALL_INCLUDEROOT
        "${CMAKE_INSTALL_INCLUDEDIR}/modeling_nuv0_traversal${MODELING_NUV0_SUFFIX}")
else()
    set(MODELING_NUV0_INSTALL_INCLUDEROOT "${CMAKE_INSTALL_INCLUDEDIR}")
endif()
set(MODELING_NUV0_INSTALL_INCLUDEDIR
    "${MODELING_NUV0_INSTALL_INCLUDEROOT}/modeling_nuv0_traversal")

# The same spelling in a build that is not installed.
set(MODELING_NUV0_BUILD_INCLUDEROOT "${PROJECT_BINARY_DIR}/include")
file(MAKE_DIRECTORY "${MODELING_NUV0_BUILD_INCLUDEROOT}/modeling_nuv0_traversal")
foreach(folder IN ITEMS model traversal xmi)
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/${folder}"
         "${MODELING_NUV0_BUILD_INCLUDEROOT}/modeling_nuv0_traversal/${folder}" COPY_ON_ERROR
         SYMBOLIC)
endforeach()

# modeling_nuv0_make_library(<target> <export name> <namespace>)
#
# The library of an object library, <target>_objects: what it is called, where its headers are, and
# what it offers.
function(modeling_nuv0_make_library target export_name namespace)
    add_library(${target} ${MODELING_NUV0_LIBRARY_TYPE} $<TARGET_OBJECTS:${target}_objects>)
    target_compile_features(${target} PUBLIC cxx_std_20)
    target_compile_definitions(${target} PUBLIC ${MODELING_NUV0_USAGE_DEFINITIONS})
    target_compile_definitions(${target}_objects PUBLIC ${MODELING_NUV0_USAGE_DEFINITIONS}
                               PRIVATE ${target}_EXPORTS)
    target_include_directories(${target}_objects PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
    target_include_directories(
        ${target}
        PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
               $<BUILD_INTERFACE:${MODELING_NUV0_BUILD_INCLUDEROOT}>
               $<INSTALL_INTERFACE:${MODELING_NUV0_INSTALL_INCLUDEDIR}>
               $<INSTALL_INTERFACE:${MODELING_NUV0_INSTALL_INCLUDEROOT}>)
    set_target_properties(
        ${target}_objects
        PROPERTIES POSITION_INDEPENDENT_CODE ON
                   CXX_VISIBILITY_PRESET hidden
                   VISIBILITY_INLINES_HIDDEN ON
                   CXX_EXTENSIONS OFF)
    set_target_properties(
        ${target}
        PROPERTIES LINKER_LANGUAGE CXX
                   OUTPUT_NAME ${target}${MODELING_NUV0_SUFFIX}
                   VERSION ${PROJECT_VERSION}
                   SOVERSION ${MODELING_NUV0_ABI_VERSION}
                   EXPORT_NAME ${export_name}${MODELING_NUV0_SUFFIX}
                   # Installed beside what it needs.
                   INSTALL_RPATH "$ORIGIN")
    add_library(modeling_nuv0::${export_name} ALIAS ${target})
    if(MODELING_NUV0_SUFFIX)
        add_library(modeling_nuv0::${export_name}${MODELING_NUV0_SUFFIX} ALIAS ${target})
    endif()
    if(MODELING_NUV0_LIBRARY_TYPE STREQUAL "SHARED")
        modeling_nuv0_seal_library(${target} ${namespace})
    endif()
endfunction()
