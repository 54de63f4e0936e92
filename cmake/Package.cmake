# Installation: libraries, headers, and what find_package(modeling_nuv0_traversal) and pkg-config read.
# The package of a library over a host's framework is named after it: modeling_nuv0_traversal-<name>.
include(CMakePackageConfigHelpers)

# What is installed without a component of its own is for building on the library.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)

set(package "modeling_nuv0_traversal${MODELING_NUV0_SUFFIX}")
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/${package}")
set(build_dir "${PROJECT_BINARY_DIR}/package")

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
        StandardLibrary.h
        WalkSupport.h)
endif()
modeling_nuv0_install_headers(traversal ${MODELING_NUV0_TRAVERSAL_HEADERS}
                              ${MODELING_NUV0_TRAVERSAL_ENGINE_HEADERS})
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DOCDIR}")

# What shows elements, links and walks in gdb, and the script by which gdb finds it: below its folder for
# such scripts, at the library's own path.
set(MODELING_NUV0_PRINTERS_DIR "${CMAKE_INSTALL_FULL_DATADIR}/modeling_nuv0_traversal/gdb")
install(FILES "${PROJECT_SOURCE_DIR}/tools/gdb/modeling_nuv0_printers.py"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/modeling_nuv0_traversal/gdb"
        COMPONENT runtime)
configure_file("${PROJECT_SOURCE_DIR}/tools/gdb/autoload.py.in" "${build_dir}/autoload.py" @ONLY)
foreach(target IN LISTS installed_targets)
    install(
        FILES "${build_dir}/autoload.py"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/gdb/auto-load/${CMAKE_INSTALL_FULL_LIBDIR}"
        RENAME "lib${target}${MODELING_NUV0_SUFFIX}.so.${PROJECT_VERSION}-gdb.py"
        COMPONENT runtime)
endforeach()

install(
    TARGETS ${installed_targets}
    EXPORT ${package}-targets
    RUNTIME COMPONENT runtime
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development)
install(
    EXPORT ${package}-targets
    NAMESPACE modeling_nuv0::
    DESTINATION "${package_dir}")
# The build tree serves as well, by -D modeling_nuv0_traversal_DIR=<build>/package.
export(
    EXPORT ${package}-targets
    NAMESPACE modeling_nuv0::
    FILE "${build_dir}/${package}-targets.cmake")

set(find_framework "")
if(MODELING_NUV0_FRAMEWORK_PACKAGE)
    set(find_framework "find_dependency(${MODELING_NUV0_FRAMEWORK_PACKAGE})")
endif()
configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/modeling_nuv0_traversal-config.cmake.in"
    "${build_dir}/${package}-config.cmake" INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${build_dir}/${package}-config-version.cmake"
                                 COMPATIBILITY ${MODELING_NUV0_COMPATIBILITY})
install(FILES "${build_dir}/${package}-config.cmake" "${build_dir}/${package}-config-version.cmake"
        DESTINATION "${package_dir}")

# modeling_nuv0_install_pkg_config(<name> <description> <required packages> <definition>...)
function(modeling_nuv0_install_pkg_config name description requires)
    foreach(directory IN ITEMS LIBDIR INCLUDEROOT INCLUDEDIR)
        set(path "${MODELING_NUV0_INSTALL_${directory}}")
        if(directory STREQUAL "LIBDIR")
            set(path "${CMAKE_INSTALL_LIBDIR}")
        endif()
        if(NOT IS_ABSOLUTE "${path}")
            string(PREPEND path "\${prefix}/")
        endif()
        set("${directory}" "${path}")
    endforeach()
    set(definitions "")
    foreach(definition IN LISTS ARGN)
        string(REPLACE "\"" "\\\"" definition "${definition}")
        string(APPEND definitions " -D${definition}")
    endforeach()
    set(prefix "${CMAKE_INSTALL_PREFIX}")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/pkg-config.pc.in" "${build_dir}/${name}.pc" @ONLY)
    install(FILES "${build_dir}/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endfunction()

set(requires "")
if(TARGET modeling_nuv0_model)
    set(requires "modeling_nuv0_model = ${PROJECT_VERSION}")
    modeling_nuv0_install_pkg_config(
        modeling_nuv0_model "The in-memory model of modeling_nuv0_traversal" ""
        ${MODELING_NUV0_USAGE_DEFINITIONS})
endif()
modeling_nuv0_install_pkg_config(
    ${package} "${PROJECT_DESCRIPTION}" "${requires}" ${MODELING_NUV0_USAGE_DEFINITIONS}
    ${MODELING_NUV0_FRAMEWORK_DEFINITIONS})

if(MODELING_NUV0_DEBIAN_PACKAGES)
    include(Debian)
endif()
