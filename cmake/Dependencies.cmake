# expat is built from source by scripts/build-expat and loaded at run time: the build needs its header for the types of
# its functions, and a copy of the library beside the programs.
set(VARNHELT_EXPAT_DIR ${CMAKE_SOURCE_DIR}/build/deps/expat CACHE PATH "Where expat is installed")
if(NOT EXISTS ${VARNHELT_EXPAT_DIR}/include/expat.h)
    message(FATAL_ERROR "There is no expat in ${VARNHELT_EXPAT_DIR}: run scripts/build-expat, or set VARNHELT_EXPAT_DIR")
endif()
add_library(VarnheltExpatHeader INTERFACE)
target_include_directories(VarnheltExpatHeader SYSTEM INTERFACE ${VARNHELT_EXPAT_DIR}/include)
file(MAKE_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${VARNHELT_EXPAT_DIR}/bin/libexpat.dll)
file(COPY_FILE ${VARNHELT_EXPAT_DIR}/bin/libexpat.dll ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/libexpat.dll ONLY_IF_DIFFERENT)

# Header-only libraries of the tool. The distribution installs them among its own system's headers, which must not be
# seen by a cross build: so each is linked into a separate folder.
set(VARNHELT_HEADER_ONLY_DIR /usr/include CACHE PATH "Where CLI11 and nlohmann's JSON are installed")
add_library(VarnheltHeaderOnly INTERFACE)
target_include_directories(VarnheltHeaderOnly SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/header-only)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/header-only)
foreach(library CLI nlohmann)
    if(NOT EXISTS ${VARNHELT_HEADER_ONLY_DIR}/${library})
        message(FATAL_ERROR "There is no ${library} in ${VARNHELT_HEADER_ONLY_DIR}: set VARNHELT_HEADER_ONLY_DIR")
    endif()
    file(CREATE_LINK ${VARNHELT_HEADER_ONLY_DIR}/${library} ${CMAKE_BINARY_DIR}/header-only/${library}
        COPY_ON_ERROR SYMBOLIC)
endforeach()
