# expat is built from source by scripts/build-expat and loaded at run time: the build needs its header for the types of
# its functions, and a copy of the library beside the programs.
set(VARNHELT_EXPAT_DIR ${CMAKE_SOURCE_DIR}/build/deps/expat CACHE PATH "Where expat is installed")
if(NOT EXISTS ${VARNHELT_EXPAT_DIR}/include/expat.h)
    message(FATAL_ERROR "There is no expat in ${VARNHELT_EXPAT_DIR}: run scripts/build-expat, or set VARNHELT_EXPAT_DIR")
endif()
add_library(VarnheltExpatHeader INTERFACE)
target_include_directories(VarnheltExpatHeader SYSTEM INTERFACE ${VARNHELT_EXPAT_DIR}/include)
file(COPY_FILE ${VARNHELT_EXPAT_DIR}/bin/libexpat.dll ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/libexpat.dll ONLY_IF_DIFFERENT)
