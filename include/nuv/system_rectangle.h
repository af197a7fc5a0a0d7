/// @file
/// The rectangle of Windows. Only nuv/records.h includes this header.
#ifndef NUV_SYSTEM_RECTANGLE_H
#define NUV_SYSTEM_RECTANGLE_H

// Without windef.h there is no windows.h, and nuv/records.h defines the record.
#if defined(__has_include)
#if __has_include(<windef.h>)
#define NUV_HAS_WINDEF
#endif
#else
#define NUV_HAS_WINDEF
#endif

#if defined(NUV_HAS_WINDEF)

// windef.h needs what windows.h defines and includes before it.
#if !defined(_X86_) && !defined(_AMD64_) && !defined(_ARM_) && !defined(_ARM64_) && !defined(_ARM64EC_)
#if defined(_M_ARM64EC)
#define _ARM64EC_
#elif defined(_M_X64)
#define _AMD64_
#elif defined(_M_IX86)
#define _X86_
#elif defined(_M_ARM64)
#define _ARM64_
#elif defined(_M_ARM)
#define _ARM_
#endif
#endif
#include <sdkddkver.h>

#include <excpt.h>
#include <stdarg.h>

// windef.h must not define the macros min and max, which break std::min and std::max.
#if defined(NOMINMAX)
#include <windef.h>
#else
#define NOMINMAX
#include <windef.h>
#undef NOMINMAX
#endif

#undef NUV_HAS_WINDEF
#endif

#endif
