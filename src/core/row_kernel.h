// The mark of a hot loop over one row.
//
// A row kernel is a small function over raw pointers and a count, in the narrowest types that hold its
// values, without a branch or a call inside, so that the compiler turns it into vector code. On ELF the mark
// asks GCC for one copy per x86-64 level, chosen when the library loads; elsewhere it does nothing.
// A kernel that does little but load neighbours is marked as load-bound, and has no copy with vectors of 64
// bytes: each load at an odd place would cross a cache line.
// Every copy computes the same: the kernels are integer code, or floating code without contraction.
// A build for one level (NUV_LEVEL in CMake) defines NUV_ONE_LEVEL: everything is compiled for that level, once.

#ifndef NUV_CORE_ROW_KERNEL_H
#define NUV_CORE_ROW_KERNEL_H

// Sanitizers instrument the resolver that chooses the copy, which runs before they are ready.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && defined(__ELF__) && \
    !defined(NUV_ONE_LEVEL) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define NUV_ROW_KERNEL __attribute__((target_clones("default", "arch=x86-64-v3", "arch=x86-64-v4")))
#define NUV_LOAD_BOUND_ROW_KERNEL __attribute__((target_clones("default", "arch=x86-64-v3")))
#else
#define NUV_ROW_KERNEL
#define NUV_LOAD_BOUND_ROW_KERNEL
#endif

// For the pieces that a row kernel is made of: they must be compiled with its instruction set.
#if defined(__GNUC__)
#define NUV_INLINE inline __attribute__((always_inline))
#define NUV_RESTRICT __restrict__
#else
#define NUV_INLINE inline
#define NUV_RESTRICT __restrict
#endif

#include <cstdint>

namespace nuv {

// By value: the references of std::min and std::max keep a loop from becoming vector code.
NUV_INLINE uint8_t lesser(uint8_t a, uint8_t b) {
  return a < b ? a : b;
}
NUV_INLINE uint8_t greater(uint8_t a, uint8_t b) {
  return a > b ? a : b;
}

NUV_INLINE uint8_t difference(uint8_t a, uint8_t b) {
  return static_cast<uint8_t>(greater(a, b) - lesser(a, b));
}
NUV_INLINE int16_t magnitude(int16_t v) {
  return static_cast<int16_t>(v < 0 ? -v : v);
}

}  // namespace nuv

#endif
