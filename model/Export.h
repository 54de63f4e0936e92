#pragma once

/// Marks what the in-memory model's shared library offers to its users.
#if defined(_WIN32)
#if defined(modeling_nuv0_model_EXPORTS)
#define MODELING_NUV0_MODEL_EXPORT __declspec(dllexport)
#else
#define MODELING_NUV0_MODEL_EXPORT __declspec(dllimport)
#endif
#else
#define MODELING_NUV0_MODEL_EXPORT __attribute__((visibility("default")))
#endif
