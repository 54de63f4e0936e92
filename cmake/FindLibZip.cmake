# Finds libzip: the target LibZip::LibZip. Its own package file asks for its command-line programs as
# well, which nobody needs who reads archives.
find_path(LibZip_INCLUDE_DIR NAMES zip.h)
find_path(LibZip_CONFIG_INCLUDE_DIR NAMES zipconf.h)
find_library(LibZip_LIBRARY NAMES zip)
mark_as_advanced(LibZip_INCLUDE_DIR LibZip_CONFIG_INCLUDE_DIR LibZip_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(LibZip REQUIRED_VARS LibZip_LIBRARY LibZip_INCLUDE_DIR
                                                       LibZip_CONFIG_INCLUDE_DIR)

if(LibZip_FOUND AND NOT TARGET LibZip::LibZip)
    add_library(LibZip::LibZip UNKNOWN IMPORTED)
    set_target_properties(
        LibZip::LibZip
        PROPERTIES IMPORTED_LOCATION "${LibZip_LIBRARY}"
                   INTERFACE_INCLUDE_DIRECTORIES
                   "${LibZip_INCLUDE_DIR};${LibZip_CONFIG_INCLUDE_DIR}")
endif()
