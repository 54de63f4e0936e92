#pragma once

/// The one header through which the traversal library sees models.
///
/// By default the in-memory model stands behind it. A host that has a model framework of its own
/// names that framework's header in `MODELING_NUV0_FRAMEWORK_HEADER` (the CMake option of the same
/// name sets it for the library and for everybody who links it); the header then has to supply the
/// types and the functions that `model/FrameworkContract.h` checks.
#if defined(MODELING_NUV0_FRAMEWORK_HEADER)
#include MODELING_NUV0_FRAMEWORK_HEADER
#else
#include "model/memory/MemoryFramework.h"
#endif

#include "model/FrameworkContract.h"
#include "model/WalkSupport.h"
