# The installed package: headers, library, licence, and the files that find_package and pkg-config read.

include(CMakePackageConfigHelpers)

install(TARGETS NuvImgSDK2014DLL EXPORT NuvImgSDK2014DLLTargets)
install(FILES ${PROJECT_SOURCE_DIR}/include/NuvImgSDK2014DLL.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/nuv DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/NuvImgSDK2014DLL)
install(EXPORT NuvImgSDK2014DLLTargets
  NAMESPACE NuvImgSDK2014DLL::
  DESTINATION ${package_dir})
configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/NuvImgSDK2014DLLConfig.cmake.in
  ${PROJECT_BINARY_DIR}/NuvImgSDK2014DLLConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/NuvImgSDK2014DLLConfigVersion.cmake
  COMPATIBILITY ${NUV_COMPATIBILITY})
install(FILES
  ${PROJECT_BINARY_DIR}/NuvImgSDK2014DLLConfig.cmake
  ${PROJECT_BINARY_DIR}/NuvImgSDK2014DLLConfigVersion.cmake
  DESTINATION ${package_dir})

set(pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH NUV_PC_TO_INCLUDE /${pc_dir} /${CMAKE_INSTALL_INCLUDEDIR})
set(NUV_PC_DEFINITION "")
if(NUV_LIBRARY_TYPE STREQUAL "STATIC")
  set(NUV_PC_DEFINITION " -DNUV_STATIC")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/NuvImgSDK2014DLL.pc.in
  ${PROJECT_BINARY_DIR}/NuvImgSDK2014DLL.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/NuvImgSDK2014DLL.pc DESTINATION ${pc_dir})
