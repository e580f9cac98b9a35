# What `cmake --install` lays out: programs, public headers, import library, CMake package, docs, samples and licences;
# scripts/package adds the schemas. The tree may be moved. Records cross the module's boundary, so a build with checking
# containers is nothing to install.
if(VARNHELT_CHECKS)
    return()
endif()

# A host sees these and nothing else.
set(VARNHELT_PUBLIC_HEADERS
    Tools/VrntJson/VrntJson.h
    Varnhelt/Varnhelt.h
    Varnhelt/VarnheltCalls.h
    Varnhelt/VarnheltLoader.h
    Varnhelt/VarnheltReasons.h
    Common/FrwkCommon/Frwk_DataTypes.h
    Common/FrwkCommon/Frwk_Words.h
    Common/ZkCommon/ZkComn_ZkDbgSink.h
    Common/SrvFrwkCommon/SrvFrwk_Calls.h
    Common/SrvFrwkCommon/SrvFrwk_Interface.h
    Common/SrvFrwkCommon/SrvFrwk_Records.h
    Common/SrvFrwkCommon/SrvFrwk_ResultCode.h
    Common/SrvFrwkCommon/SrvFrwk_ValueType.h)

include(CMakePackageConfigHelpers)
set(package_dir lib/cmake/Varnhelt)

add_library(VarnheltHeaders INTERFACE)
set_target_properties(VarnheltHeaders PROPERTIES EXPORT_NAME Headers)
target_include_directories(VarnheltHeaders INTERFACE $<INSTALL_INTERFACE:include>)
target_compile_features(VarnheltHeaders INTERFACE cxx_std_20)
target_link_libraries(Varnhelt INTERFACE VarnheltHeaders)

install(TARGETS Varnhelt VarnheltHeaders EXPORT VarnheltTargets RUNTIME DESTINATION bin ARCHIVE DESTINATION lib)
install(TARGETS vrnt ZkDbgLog RUNTIME DESTINATION bin)
install(TARGETS VrntJson RUNTIME DESTINATION bin ARCHIVE DESTINATION lib)
install(FILES ${VARNHELT_EXPAT_DIR}/bin/libexpat.dll DESTINATION bin)
install(FILES ${VARNHELT_PUBLIC_HEADERS} DESTINATION include/Varnhelt)

install(EXPORT VarnheltTargets NAMESPACE Varnhelt:: DESTINATION ${package_dir})
configure_file(cmake/VarnheltConfig.cmake.in ${CMAKE_BINARY_DIR}/package/VarnheltConfig.cmake @ONLY)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/package/VarnheltConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/package/VarnheltConfig.cmake ${CMAKE_BINARY_DIR}/package/VarnheltConfigVersion.cmake
    DESTINATION ${package_dir})

install(DIRECTORY Samples/ DESTINATION share/Varnhelt/samples)
install(FILES docs/package.md DESTINATION . RENAME README.md)
install(DIRECTORY docs/ DESTINATION share/Varnhelt/docs)

# Licences of third-party software that ships with ours or is linked into it.
install(FILES ${VARNHELT_EXPAT_DIR}/share/licenses/expat/COPYING
    DESTINATION share/Varnhelt/licenses RENAME expat.txt OPTIONAL)
foreach(package libcli11-dev nlohmann-json3-dev mingw-w64-x86-64-dev)
    install(FILES /usr/share/doc/${package}/copyright
        DESTINATION share/Varnhelt/licenses RENAME ${package}.txt OPTIONAL)
endforeach()
