# What every target of this project is compiled with, and no target of anybody else. Whether a
# warning is an error is for the presets to say (CMAKE_COMPILE_WARNING_AS_ERROR).
add_library(modeling_nuv0_flags INTERFACE)
target_compile_features(modeling_nuv0_flags INTERFACE cxx_std_20)
target_compile_options(
    modeling_nuv0_flags
    INTERFACE $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:
              -Wall
              -Wextra
              -Wpedantic
              -Wconversion
              -Wshadow
              -Wnon-virtual-dtor
              -Wold-style-cast>)
# Interposing single functions is not supported, see below; so exported ones may be inlined as well.
target_compile_options(
    modeling_nuv0_flags INTERFACE $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)

# With several sources in one file (CMAKE_UNITY_BUILD), their file-local types stand in what GCC takes
# for headers.
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(modeling_nuv0_flags INTERFACE -Wno-subobject-linkage)
endif()

# Sanitizers of clang leave their run-time to the executable.
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    set(MODELING_NUV0_NO_UNDEFINED "")
else()
    set(MODELING_NUV0_NO_UNDEFINED "LINKER:--no-undefined")
endif()

# modeling_nuv0_seal_library(<shared library> <namespace>)
#
# The library offers the exported names of its namespace and nothing else: hidden visibility does not
# reach the standard templates that are instantiated for exported types, the export map does. It calls
# its own exported functions directly instead of through the dynamic linker's table (interposing single
# functions is not supported), and may not leave anything undefined.
function(modeling_nuv0_seal_library target namespace)
    if(NOT UNIX OR APPLE)
        return()
    endif()
    set(export_map "${PROJECT_BINARY_DIR}/${target}.map")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/export.map.in" "${export_map}" @ONLY)
    target_link_options(
        ${target} PRIVATE "LINKER:--version-script=${export_map}" "LINKER:-Bsymbolic-functions"
        ${MODELING_NUV0_NO_UNDEFINED})
    set_property(
        TARGET ${target}
        APPEND
        PROPERTY LINK_DEPENDS "${export_map}")
endfunction()
