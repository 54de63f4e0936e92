# Debian packages: `cpack -G DEB` in a build that installs to /usr, which scripts/deb.sh makes.
#
# One package for programs that run with the libraries, one for building on them, one for the
# command, one for the pages.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME modeling-nuv0-traversal)
set(CPACK_PACKAGE_VENDOR "The modeling_nuv0_traversal authors")
set(CPACK_PACKAGE_CONTACT "The modeling_nuv0_traversal authors <authors@modeling-nuv0-traversal.example>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# The packages find each other's libraries while they are made.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/model"
                                                "${PROJECT_BINARY_DIR}/traversal")

set(library_package "libmodeling-nuv0-traversal${MODELING_NUV0_ABI_VERSION}")
set(exactly "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(walks "Walks the object graph of a typed model: elements, links between them,
and rules that say which links to follow, in three orders, one link at a
time.")
# What has to be done when libraries come and go.
file(WRITE "${PROJECT_BINARY_DIR}/debian/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/debian/triggers")

# modeling_nuv0_debian_package(<component> <package> <section> <depends> <description>)
#
# The first line of the description is the synopsis. Each package has the licence and the changes in the
# place where Debian has them.
function(modeling_nuv0_debian_package component package section depends description)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package} PARENT_SCOPE)
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    set(CPACK_COMPONENT_${upper}_DESCRIPTION "${description}" PARENT_SCOPE)

    set(folder "${PROJECT_BINARY_DIR}/debian/${package}")
    file(MAKE_DIRECTORY "${folder}")
    file(READ "${PROJECT_SOURCE_DIR}/LICENSE" license)
    string(REGEX REPLACE "\n\n" "\n.\n" license "${license}")
    string(REGEX REPLACE "\n" "\n " license "${license}")
    file(
        WRITE "${folder}/copyright"
        "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\n"
        "Upstream-Name: modeling_nuv0_traversal\n\nFiles: *\n"
        "Copyright: 2026 The modeling_nuv0_traversal authors\nLicense: Expat\n ${license}\n")
    string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
    file(WRITE "${folder}/changelog.Debian"
         "modeling-nuv0-traversal (${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; "
         "urgency=medium\n\n  * Release ${PROJECT_VERSION}.\n\n -- ${CPACK_PACKAGE_CONTACT}  ${now}\n")
    configure_file("${PROJECT_SOURCE_DIR}/CHANGELOG.md" "${folder}/changelog" COPYONLY)
    foreach(file IN ITEMS changelog.Debian changelog)
        execute_process(COMMAND gzip -9nf "${folder}/${file}" COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
    install(
        FILES "${folder}/copyright" "${folder}/changelog.gz" "${folder}/changelog.Debian.gz"
        DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/${package}"
        COMPONENT ${component})
endfunction()

modeling_nuv0_debian_package(
    runtime ${library_package} libs ""
    "walks over the object graphs of typed models
${walks}

This package has the shared libraries, and what shows them in gdb.")
modeling_nuv0_debian_package(
    development libmodeling-nuv0-traversal-dev libdevel "${library_package} ${exactly}"
    "walks over the object graphs of typed models - development files
${walks}

This package has the headers, and files for CMake and pkg-config.")
modeling_nuv0_debian_package(
    tools model-walk utils "${library_package} ${exactly}"
    "asks questions of models in XMI files
Walks Ecore models: what an element contains, what refers to it, how one gets
from here to there, and why.")
modeling_nuv0_debian_package(
    documentation modeling-nuv0-traversal-doc doc ""
    "walks over the object graphs of typed models - documentation
${walks}

This package has the pages and the examples.")
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_COMPONENTS_ALL runtime development documentation)
if(MODELING_NUV0_BUILD_TOOLS)
    list(APPEND CPACK_COMPONENTS_ALL tools)
endif()

set(pages "${CMAKE_INSTALL_DATAROOTDIR}/doc/modeling-nuv0-traversal-doc")
file(GLOB documents "${PROJECT_SOURCE_DIR}/docs/*.md" "${PROJECT_SOURCE_DIR}/docs/*.svg")
install(FILES ${documents} DESTINATION "${pages}/docs" COMPONENT documentation)
install(FILES "${PROJECT_SOURCE_DIR}/README.md" DESTINATION "${pages}" COMPONENT documentation)
install(
    DIRECTORY "${PROJECT_SOURCE_DIR}/examples"
    DESTINATION "${pages}"
    COMPONENT documentation
    FILES_MATCHING
    PATTERN "*.cpp"
    PATTERN "*.h"
    PATTERN "*.expected"
    PATTERN "models/*")

include(CPack)
