// The mark of a hot loop over one row.
//
// A row kernel is a small function over raw pointers and a count. It uses the narrowest types that hold its
// values and contains no branch or call, so that the compiler turns it into vector code. On ELF the mark
// makes GCC compile one copy per x86-64 level, and one of them is chosen when the library loads. Elsewhere it
// does nothing. Every copy computes the same, because kernels are integer code, or floating-point code
// without contraction.
//
// A kernel that does little but load neighbours is marked as load-bound. It has no copy with vectors of 64
// bytes, because each of its unaligned loads would cross a cache line.
//
// A build for one level (NUV_LEVEL in CMake) defines NUV_ONE_LEVEL and compiles everything once.

#ifndef NUV_CORE_ROW_KERNEL_H
#define NUV_CORE_ROW_KERNEL_H

// Sanitizers instrument the resolver that chooses the copy, which runs before they are ready.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && defined(__ELF__) && \
    !defined(NUV_ONE_LEVEL) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define NUV_HAS_COPIES 1
#define NUV_ROW_KERNEL __attribute__((target_clones("default", "arch=x86-64-v3", "arch=x86-64-v4")))
#define NUV_LOAD_BOUND_ROW_KERNEL __attribute__((target_clones("default", "arch=x86-64-v3")))
#else
#define NUV_HAS_COPIES 0
#define NUV_ROW_KERNEL
#define NUV_LOAD_BOUND_ROW_KERNEL
#endif

// The mark of a part of a row kernel, which must be compiled with the kernel's instruction set.
#if defined(__GNUC__)
#define NUV_INLINE inline __attribute__((always_inline))
#define NUV_RESTRICT __restrict__
#else
#define NUV_INLINE inline
#define NUV_RESTRICT __restrict
#endif

#include <cstdint>

namespace nuv {

// Arguments are values: the references of std::min and std::max keep compilers from making vector code.
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
