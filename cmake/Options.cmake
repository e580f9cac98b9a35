# A compiler cache is used where one is installed.
find_program(VARNHELT_COMPILER_CACHE ccache)
if(VARNHELT_COMPILER_CACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${VARNHELT_COMPILER_CACHE})
endif()

# Compiler and linker options of everything that is ours, as one interface target.
add_library(VarnheltOptions INTERFACE)

target_compile_definitions(VarnheltOptions INTERFACE
    UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601 __USE_MINGW_ANSI_STDIO=0)

# mingw's windows.h includes every intrinsic of the processor, a third of a compile. Who uses some includes them.
target_compile_definitions(VarnheltOptions INTERFACE
    $<$<CXX_COMPILER_ID:GNU>:_X86INTRIN_H_INCLUDED> $<$<CXX_COMPILER_ID:Clang>:__X86INTRIN_H>)

if(MSVC)
    target_compile_options(VarnheltOptions INTERFACE /W4 /WX /permissive- /utf-8 /Zc:__cplusplus)
    target_link_options(VarnheltOptions INTERFACE /Brepro)
else()
    target_compile_options(VarnheltOptions INTERFACE
        -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
        -Woverloaded-virtual -Wcast-qual -Wundef -Wimplicit-fallthrough
        -ffile-prefix-map=${CMAKE_SOURCE_DIR}/= -fstack-protector-strong)
    # Everything is linked in: what ships depends on system libraries alone. No timestamp: the output is reproducible.
    target_link_options(VarnheltOptions INTERFACE -static -fstack-protector-strong -Wl,--no-insert-timestamp)
    target_link_libraries(VarnheltOptions INTERFACE VarnheltStackGuard)
    if(VARNHELT_CHECKS)
        target_compile_definitions(VarnheltOptions INTERFACE _GLIBCXX_ASSERTIONS _GLIBCXX_DEBUG)
        # Undefined behaviour traps in what ships. Tests and the tool, whose code is mostly other libraries' templates, are
        # built in half the time without.
        target_compile_options(VarnheltOptions INTERFACE
            $<IF:$<BOOL:$<TARGET_PROPERTY:VARNHELT_QUICK>>,-O0,-O1;-fsanitize=undefined;-fsanitize-undefined-trap-on-error>)
        # Merging the objects' debug sections takes minutes a program. To debug, link without this option.
        target_link_options(VarnheltOptions INTERFACE -Wl,--strip-debug)
        # GNU's linker needs half a minute for a test program with its thousands of functions, lld a part of a second; the
        # compiler cannot call it under its name here, clang can. What ships is linked by GNU's.
        find_program(VARNHELT_CLANG clang++)
        find_program(VARNHELT_LLD ld.lld)
        if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND VARNHELT_CLANG AND VARNHELT_LLD)
            execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-libgcc-file-name OUTPUT_VARIABLE libgcc)
            cmake_path(GET libgcc PARENT_PATH libgcc_dir)
            # Both the compiler's library and clang define an operator of std::type_info.
            set(lld
                "${VARNHELT_CLANG} --target=x86_64-w64-mingw32 -fuse-ld=lld -Wl,--allow-multiple-definition -L${libgcc_dir}")
            foreach(kind LINK_EXECUTABLE CREATE_SHARED_LIBRARY CREATE_SHARED_MODULE)
                string(REPLACE "<CMAKE_CXX_COMPILER>" "${lld}" CMAKE_CXX_${kind} "${CMAKE_CXX_${kind}} -lpthread")
            endforeach()
        endif()
    endif()
    if(CMAKE_BUILD_TYPE STREQUAL "Release")
        target_compile_definitions(VarnheltOptions INTERFACE _FORTIFY_SOURCE=2)
        target_link_options(VarnheltOptions INTERFACE -s)
    endif()
endif()

if(CMAKE_BUILD_TYPE STREQUAL "Release")
    # Not optimised across units: the tests run around the same objects that ship. Who turns it on must link at the level of
    # the objects, or the compiler folds functions that differ in types alone, and drops what it takes for unused stores.
    # GCC picks random names for symbols that must differ between units; seeding with the object's name makes them
    # reproducible.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        string(REPLACE "<FLAGS>" "<FLAGS> -frandom-seed=<OBJECT>" CMAKE_CXX_COMPILE_OBJECT
            "${CMAKE_CXX_COMPILE_OBJECT}")
    endif()
endif()
