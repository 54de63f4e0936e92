#pragma once

#include "../model/Compiler.h"

/// Marks what the traversal library offers to its users; everything else stays hidden.
#if defined(modeling_nuv0_traversal_EXPORTS)
#define MODELING_NUV0_TRAVERSAL_EXPORT MODELING_NUV0_OFFERED
#else
#define MODELING_NUV0_TRAVERSAL_EXPORT MODELING_NUV0_TAKEN
#endif

/// Keeps a member of an exported class inside the library.
#define MODELING_NUV0_TRAVERSAL_LOCAL MODELING_NUV0_HIDDEN
