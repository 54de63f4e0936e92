#pragma once

/// Marks what the traversal library offers to its users; everything else stays hidden.
#if defined(_WIN32)
#if defined(modeling_nuv0_traversal_EXPORTS)
#define MODELING_NUV0_TRAVERSAL_EXPORT __declspec(dllexport)
#else
#define MODELING_NUV0_TRAVERSAL_EXPORT __declspec(dllimport)
#endif
#else
#define MODELING_NUV0_TRAVERSAL_EXPORT __attribute__((visibility("default")))
#endif

/// Keeps a member of an exported class inside the library.
#if defined(_WIN32)
#define MODELING_NUV0_TRAVERSAL_LOCAL
#else
#define MODELING_NUV0_TRAVERSAL_LOCAL __attribute__((visibility("hidden")))
#endif
