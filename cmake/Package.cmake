# Installation: libraries, headers and what find_package(modeling_nuv0_traversal) reads.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/modeling_nuv0_traversal")

# modeling_nuv0_install_headers(<directory> <header>...): keeps the directory below the include root.
function(modeling_nuv0_install_headers directory)
    foreach(header IN LISTS ARGN)
        cmake_path(GET header PARENT_PATH below)
        install(FILES "${PROJECT_SOURCE_DIR}/${directory}/${header}"
                DESTINATION "${MODELING_NUV0_INSTALL_INCLUDEDIR}/${directory}/${below}")
    endforeach()
endfunction()

set(installed_targets modeling_nuv0_traversal)
if(TARGET modeling_nuv0_model)
    list(APPEND installed_targets modeling_nuv0_model)
    modeling_nuv0_install_headers(model ${MODELING_NUV0_MODEL_HEADERS})
else()
    modeling_nuv0_install_headers(
        model
        ChosenFramework.h
        Compiler.h
        CountingWalkSupport.h
        Framework.h
        FrameworkContract.h
        WalkSupport.h)
endif()
modeling_nuv0_install_headers(traversal ${MODELING_NUV0_TRAVERSAL_HEADERS}
                              ${MODELING_NUV0_TRAVERSAL_ENGINE_HEADERS})

install(TARGETS ${installed_targets} EXPORT modeling_nuv0_traversal-targets)
install(
    EXPORT modeling_nuv0_traversal-targets
    NAMESPACE modeling_nuv0::
    DESTINATION "${package_dir}")

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/modeling_nuv0_traversal-config.cmake.in"
    "${PROJECT_BINARY_DIR}/package/modeling_nuv0_traversal-config.cmake"
    INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/package/modeling_nuv0_traversal-config-version.cmake"
    COMPATIBILITY ${MODELING_NUV0_COMPATIBILITY})
install(FILES "${PROJECT_BINARY_DIR}/package/modeling_nuv0_traversal-config.cmake"
              "${PROJECT_BINARY_DIR}/package/modeling_nuv0_traversal-config-version.cmake"
        DESTINATION "${package_dir}")
