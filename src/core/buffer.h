// Memory that the library allocates. If an allocation fails, the buffer is empty and nothing is thrown.

#ifndef NUV_CORE_BUFFER_H
#define NUV_CORE_BUFFER_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace nuv {

template <class T>
using Buffer = std::unique_ptr<T[]>;

// Elements are not initialised. The count has 64 bits on every platform, because an image can have more
// pixels than a 32-bit process has addresses. The allocation of a negative count fails.
template <class T>
Buffer<T> allocate(int64_t count) {
  // Refuse counts beyond the address space first: nothrow new still throws for those.
  // NOLINTNEXTLINE(bugprone-sizeof-expression): elements may be pointers.
  if (count < 0 || static_cast<uint64_t>(count) > PTRDIFF_MAX / sizeof(T)) return {};
  return Buffer<T>(new (std::nothrow) T[static_cast<std::size_t>(count)]);
}

}  // namespace nuv

#endif
