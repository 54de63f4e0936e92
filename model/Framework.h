#pragma once

/// The one header through which the traversal library sees models.
///
/// By default the in-memory model stands behind it. A host that has a model framework of its own
/// names that framework's header in `MODELING_NUV0_FRAMEWORK_HEADER` (the CMake option of the same
/// name sets it for the library and for everybody who links it); the header then has to supply the
/// types and the functions that `model/FrameworkContract.h` checks. It includes at most
/// `model/WalkSupport.h` and `model/Compiler.h` of this directory.
#include "ChosenFramework.h"

#include "CountingWalkSupport.h"
#include "FrameworkContract.h"
