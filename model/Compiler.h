#pragma once

/// What compilers offer beyond the language, in one place, each with a fallback.
///
/// Nothing depends on any of it for what it does: these are hints, and marks for the shared
/// libraries. Define `MODELING_NUV0_PLAIN_COMPILER` to compile with the fallbacks alone, as a
/// compiler that is not known here does.
#if !defined(MODELING_NUV0_PLAIN_COMPILER) && (defined(__GNUC__) || defined(__clang__))
#define MODELING_NUV0_KNOWN_COMPILER
#endif

/// Stands before a function, or between the parameters and the body of a lambda: its calls become
/// part of the caller however large it is. A function outside a class is declared `inline` too.
/// Stands before a function that is called rarely, so that it does not make its callers larger, and
/// lies apart from what runs often.
#if defined(MODELING_NUV0_KNOWN_COMPILER)
#define MODELING_NUV0_ALWAYS_INLINE __attribute__((always_inline))
#define MODELING_NUV0_NOINLINE __attribute__((noinline))
#define MODELING_NUV0_COLD __attribute__((noinline, cold))
#else
#define MODELING_NUV0_ALWAYS_INLINE
#define MODELING_NUV0_NOINLINE
#define MODELING_NUV0_COLD
#endif

/// Stand around a declaration whose const result g++ remarks on.
#if defined(MODELING_NUV0_KNOWN_COMPILER)
#define MODELING_NUV0_WITHOUT_QUALIFIER_REMARKS \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wignored-qualifiers\"")
#define MODELING_NUV0_WITH_QUALIFIER_REMARKS _Pragma("GCC diagnostic pop")
#else
#define MODELING_NUV0_WITHOUT_QUALIFIER_REMARKS
#define MODELING_NUV0_WITH_QUALIFIER_REMARKS
#endif

/// What a shared library offers to its users, what its users take from it, and what stays inside
/// although it is a member of an exported class.
#if defined(_WIN32) && (defined(MODELING_NUV0_STATIC) || defined(MODELING_NUV0_PLAIN_COMPILER))
#define MODELING_NUV0_OFFERED
#define MODELING_NUV0_TAKEN
#define MODELING_NUV0_HIDDEN
#elif defined(_WIN32)
#define MODELING_NUV0_OFFERED __declspec(dllexport)
#define MODELING_NUV0_TAKEN __declspec(dllimport)
#define MODELING_NUV0_HIDDEN
#elif defined(MODELING_NUV0_KNOWN_COMPILER)
#define MODELING_NUV0_OFFERED __attribute__((visibility("default")))
#define MODELING_NUV0_TAKEN __attribute__((visibility("default")))
#define MODELING_NUV0_HIDDEN __attribute__((visibility("hidden")))
#else
#define MODELING_NUV0_OFFERED
#define MODELING_NUV0_TAKEN
#define MODELING_NUV0_HIDDEN
#endif

namespace nuv::zero::access {

/// The unit in which memory comes into a cache: what lies in one comes together.
inline constexpr unsigned cacheLine = 64;

/// Begins to load the cache line that holds an address. Reads and changes nothing that a program
/// could see, so the address may be null or gone.
MODELING_NUV0_ALWAYS_INLINE inline void prefetchLine([[maybe_unused]] const void* place) noexcept {
#if defined(MODELING_NUV0_KNOWN_COMPILER)
    __builtin_prefetch(place);
#endif
}

/// A number in a type that is narrower on some machines; what does not fit is cut off. A plain cast
/// draws a remark from g++ where it changes nothing.
template <class To, class From>
constexpr To narrowed(From number) noexcept {
    return static_cast<To>(number);
}

}  // namespace nuv::zero::access

#undef MODELING_NUV0_KNOWN_COMPILER
