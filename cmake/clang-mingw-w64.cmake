# The same target with clang over GCC's standard library.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-mingw32)
set(gcc_headers /usr/lib/gcc/x86_64-w64-mingw32/12-posix/include/c++)
set(CMAKE_CXX_FLAGS_INIT
    "-nostdinc++ -isystem ${gcc_headers} -isystem ${gcc_headers}/x86_64-w64-mingw32 -isystem ${gcc_headers}/backward")
# The library defines an operator of std::type_info that clang defines as well wherever it is used.
set(gcc_libraries
    "-fuse-ld=lld -Wl,--allow-multiple-definition -L/usr/lib/gcc/x86_64-w64-mingw32/12-posix -lpthread")
set(CMAKE_EXE_LINKER_FLAGS_INIT "${gcc_libraries}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${gcc_libraries}")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "${gcc_libraries}")
