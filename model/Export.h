#pragma once

#include "Compiler.h"
#include "StandardLibrary.h"

/// Marks what the in-memory model's shared library offers to its users.
#if defined(modeling_nuv0_model_EXPORTS)
#define MODELING_NUV0_MODEL_EXPORT MODELING_NUV0_OFFERED
#else
#define MODELING_NUV0_MODEL_EXPORT MODELING_NUV0_TAKEN
#endif
