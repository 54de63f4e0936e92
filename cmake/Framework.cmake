# What a library over a host's framework is called, and what it links. All of it is named after the
# framework, so that nobody takes it for the one over the in-memory model: both can be installed in
# one place and loaded into one process.
set(MODELING_NUV0_SUFFIX "")
set(MODELING_NUV0_FRAMEWORK_LINKS "")
set(MODELING_NUV0_FRAMEWORK_DEFINITIONS "")
if(NOT MODELING_NUV0_FRAMEWORK_HEADER)
    return()
endif()

if(NOT MODELING_NUV0_FRAMEWORK_NAME MATCHES "^[a-z][a-z0-9_]*$")
    message(FATAL_ERROR "MODELING_NUV0_FRAMEWORK_NAME is \"${MODELING_NUV0_FRAMEWORK_NAME}\"; it takes "
                        "lower-case letters, digits and underscores, a letter first")
endif()
set(MODELING_NUV0_SUFFIX "-${MODELING_NUV0_FRAMEWORK_NAME}")
set(MODELING_NUV0_FRAMEWORK_DEFINITIONS
    "MODELING_NUV0_FRAMEWORK_HEADER=\"${MODELING_NUV0_FRAMEWORK_HEADER}\""
    "MODELING_NUV0_FRAMEWORK_NAME=${MODELING_NUV0_FRAMEWORK_NAME}")

if(MODELING_NUV0_FRAMEWORK_PACKAGE)
    find_package(${MODELING_NUV0_FRAMEWORK_PACKAGE} REQUIRED)
endif()
if(NOT MODELING_NUV0_FRAMEWORK_TARGET)
    return()
endif()
if(NOT TARGET ${MODELING_NUV0_FRAMEWORK_TARGET})
    message(
        FATAL_ERROR
            "MODELING_NUV0_FRAMEWORK_TARGET is ${MODELING_NUV0_FRAMEWORK_TARGET}, and there is no such "
            "target: name the package that has it in MODELING_NUV0_FRAMEWORK_PACKAGE, or add this "
            "project to the one that makes it by add_subdirectory, behind it")
endif()
set(installed_target "${MODELING_NUV0_FRAMEWORK_INSTALLED_TARGET}")
if(NOT installed_target AND MODELING_NUV0_FRAMEWORK_TARGET MATCHES "::")
    set(installed_target "${MODELING_NUV0_FRAMEWORK_TARGET}")
endif()
if(NOT installed_target AND MODELING_NUV0_INSTALL)
    message(
        FATAL_ERROR
            "MODELING_NUV0_FRAMEWORK_TARGET is ${MODELING_NUV0_FRAMEWORK_TARGET}, a name that ends with "
            "this build: give MODELING_NUV0_FRAMEWORK_INSTALLED_TARGET the one of the installed "
            "framework (such as host::model), or switch MODELING_NUV0_INSTALL off")
endif()
set(MODELING_NUV0_FRAMEWORK_LINKS "$<BUILD_INTERFACE:${MODELING_NUV0_FRAMEWORK_TARGET}>")
if(installed_target)
    list(APPEND MODELING_NUV0_FRAMEWORK_LINKS "$<INSTALL_INTERFACE:${installed_target}>")
endif()
