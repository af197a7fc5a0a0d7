// Memory of the library's own. An allocation that fails leaves an empty buffer and throws nothing.

#ifndef NUV_CORE_BUFFER_H
#define NUV_CORE_BUFFER_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace nuv {

template <class T>
using Buffer = std::unique_ptr<T[]>;

// Elements are left as the memory comes. The count has 64 bits everywhere, as there are more pixels in an
// image than addresses in a 32-bit process.
template <class T>
Buffer<T> allocate(uint64_t count) {
  // Of more than there are addresses for, new throws in spite of what it is asked for.
  // NOLINTNEXTLINE(bugprone-sizeof-expression): elements may be pointers.
  if (count > PTRDIFF_MAX / sizeof(T)) return {};
  return Buffer<T>(new (std::nothrow) T[static_cast<std::size_t>(count)]);
}

}  // namespace nuv

#endif
