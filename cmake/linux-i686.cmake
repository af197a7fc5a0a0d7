# 32-bit Linux, built by the compiler of the build machine, whose kernel also runs the programs.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
# The kernel's headers are the same for 32 and 64 bits. The package gcc-multilib links them to where -m32 looks, but it
# cannot be installed together with a compiler for another processor.
set(CMAKE_C_FLAGS_INIT "-m32 -idirafter /usr/include/x86_64-linux-gnu")
set(CMAKE_CXX_FLAGS_INIT "-m32 -idirafter /usr/include/x86_64-linux-gnu")
