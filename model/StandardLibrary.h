#pragma once

#include <cstddef>

/// Says at once what would otherwise be pages of undefined references: that a source and the
/// libraries that it will be linked with are compiled against different standard libraries.
///
/// The build of the libraries tells those who use its targets or its pkg-config files in which mode
/// they are; whoever uses neither is taken to have the plain one.
#if defined(_GLIBCXX_DEBUG) && !defined(MODELING_NUV0_DEBUG_CONTAINERS)
#error \
    "_GLIBCXX_DEBUG is defined here and was not when the modeling_nuv0 libraries were built. \
Their containers differ, so nothing would link: build the libraries with it too."
#elif !defined(_GLIBCXX_DEBUG) && defined(MODELING_NUV0_DEBUG_CONTAINERS)
#error \
    "The modeling_nuv0 libraries were built with _GLIBCXX_DEBUG, which is not defined here. \
Their containers differ, so nothing would link: define it here too."
#endif

#if defined(_GLIBCXX_USE_CXX11_ABI)
#if !_GLIBCXX_USE_CXX11_ABI && !defined(MODELING_NUV0_OLD_STRINGS)
#error \
    "_GLIBCXX_USE_CXX11_ABI is 0 here and was not when the modeling_nuv0 libraries were built. \
Their strings differ, so nothing would link: build the libraries with it too."
#elif _GLIBCXX_USE_CXX11_ABI && defined(MODELING_NUV0_OLD_STRINGS)
#error \
    "The modeling_nuv0 libraries were built with _GLIBCXX_USE_CXX11_ABI=0, which is 1 here. \
Their strings differ, so nothing would link: set it to 0 here too."
#endif
#endif
