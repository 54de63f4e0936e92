#pragma once

/// The types and functions of the model framework that was chosen, unchecked: what is built on
/// them, whichever framework it is, includes this header, and everybody else `model/Framework.h`.
#if defined(MODELING_NUV0_FRAMEWORK_HEADER)
#include MODELING_NUV0_FRAMEWORK_HEADER
#else
#include "memory/MemoryFramework.h"
#endif
