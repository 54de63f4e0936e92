# Rebuilds through ccache where it is installed and nobody chose another launcher.
if(PROJECT_IS_TOP_LEVEL AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    find_program(MODELING_NUV0_CCACHE ccache)
    mark_as_advanced(MODELING_NUV0_CCACHE)
    if(MODELING_NUV0_CCACHE)
        set(CMAKE_CXX_COMPILER_LAUNCHER "${MODELING_NUV0_CCACHE}")
    endif()
endif()
