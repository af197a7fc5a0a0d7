# 32-bit WebAssembly on the system interface WASI, run under Node.js.
#
# There are no shared libraries, exceptions or threads. Programs link the library statically.

set(CMAKE_SYSTEM_NAME WASI)
set(CMAKE_SYSTEM_PROCESSOR wasm32)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET wasm32-wasi)
set(CMAKE_CXX_COMPILER_TARGET wasm32-wasi)
set(CMAKE_SYSROOT /usr)
set(CMAKE_CXX_FLAGS_INIT "-fno-exceptions")
list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR})
set(CMAKE_CROSSCOMPILING_EMULATOR node --no-warnings ${CMAKE_CURRENT_LIST_DIR}/run_wasm.mjs)

# By default the stack has 64 KB and lies above the data, into which it overflows silently. Below the data, an overflow
# traps.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,--stack-first -Wl,-z,stack-size=1048576")

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
