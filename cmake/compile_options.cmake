# The options that every target of the project is compiled with.
#
# Arithmetic is part of the contract of the library: signed overflow wraps, a product and a sum are always two
# roundings, and 32-bit x86 computes in SSE registers, which have the width of the type.

add_library(nuv_options INTERFACE)

if(MSVC)
  target_compile_options(nuv_options INTERFACE /W4 /fp:precise)
else()
  target_compile_options(nuv_options INTERFACE -Wall -Wextra -fwrapv -ffp-contract=off)
  if(NUV_WARNINGS_AS_ERRORS)
    target_compile_options(nuv_options INTERFACE -Werror)
  endif()
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(i[3-6]86|x86|x86_64|AMD64)$" AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    target_compile_options(nuv_options INTERFACE -msse2 -mfpmath=sse)
  endif()
  if(NUV_SANITIZE)
    target_compile_options(nuv_options INTERFACE
      -fsanitize=${NUV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(nuv_options INTERFACE -fsanitize=${NUV_SANITIZE})
  endif()
endif()
