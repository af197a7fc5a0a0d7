// Memory of the library's own. An allocation that fails leaves an empty buffer and throws nothing.

#ifndef NUV_FRAME_BUFFER_H
#define NUV_FRAME_BUFFER_H

#include <cstddef>
#include <memory>
#include <new>

namespace nuv {

template <class T>
using Buffer = std::unique_ptr<T[]>;

// Elements are left as the memory comes.
template <class T>
Buffer<T> allocate(std::size_t count) {
  return Buffer<T>(new (std::nothrow) T[count]);
}

}  // namespace nuv

#endif
