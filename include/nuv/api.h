/// @file
/// The mark of an exported function.
#ifndef NUV_API_H
#define NUV_API_H

/// @def NUV_API
/// Marks a function that the shared library exports.
///
/// Only the build of the library itself defines NUV_BUILDING_LIBRARY. Hosts of the static library define
/// NUV_STATIC; the installed package does it for them.
#if defined(NUV_STATIC)
#define NUV_API
#elif defined(_WIN32)
#if defined(NUV_BUILDING_LIBRARY)
#define NUV_API __declspec(dllexport)
#else
#define NUV_API __declspec(dllimport)
#endif
#else
#define NUV_API __attribute__((visibility("default")))
#endif

#endif
