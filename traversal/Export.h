#pragma once

#include "../model/Compiler.h"
#include "../model/StandardLibrary.h"

/// Follows the name of the library's namespace where that is opened. A library that is built over a
/// host's framework has all its names in an inline namespace of their own, `over_<name>`, with the
/// framework's name as the build gives it: users write the same names, and two libraries over two
/// frameworks share no symbol, so one process may hold both, and whoever mixes them is told by the
/// linker.
#if defined(MODELING_NUV0_FRAMEWORK_NAME)
#define MODELING_NUV0_JOIN(one, other) one##other
#define MODELING_NUV0_OVER_NAMED(name) ::inline MODELING_NUV0_JOIN(over_, name)
#define MODELING_NUV0_OVER MODELING_NUV0_OVER_NAMED(MODELING_NUV0_FRAMEWORK_NAME)
#elif defined(MODELING_NUV0_FRAMEWORK_HEADER)
#define MODELING_NUV0_OVER ::inline over_host
#else
#define MODELING_NUV0_OVER
#endif

/// Marks what the traversal library offers to its users; everything else stays hidden.
#if defined(modeling_nuv0_traversal_EXPORTS)
#define MODELING_NUV0_TRAVERSAL_EXPORT MODELING_NUV0_OFFERED
#else
#define MODELING_NUV0_TRAVERSAL_EXPORT MODELING_NUV0_TAKEN
#endif

/// Keeps a member of an exported class inside the library.
#define MODELING_NUV0_TRAVERSAL_LOCAL MODELING_NUV0_HIDDEN
