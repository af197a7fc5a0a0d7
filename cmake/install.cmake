# The installed package: headers, library, licence, and the files that find_package and pkg-config read.

include(CMakePackageConfigHelpers)

install(TARGETS NuvImgSDK2014DLL EXPORT NuvImgSDK2014DLLTargets)
install(FILES ${PROJECT_SOURCE_DIR}/include/NuvImgSDK2014DLL.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(NUV_BUILD_C_LIBRARY)
  install(TARGETS nuvimgsdk_c EXPORT NuvImgSDK2014DLLTargets)
  install(FILES ${PROJECT_SOURCE_DIR}/bindings/c/nuvimgsdk_c.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/nuv DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/NuvImgSDK2014DLL)
install(EXPORT NuvImgSDK2014DLLTargets
  NAMESPACE NuvImgSDK2014DLL::
  DESTINATION ${package_dir})
configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/NuvImgSDK2014DLLConfig.cmake.in
  ${PROJECT_BINARY_DIR}/NuvImgSDK2014DLLConfig.cmake
  INSTALL_DESTINATION ${package_dir}
  PATH_VARS CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/NuvImgSDK2014DLLConfigVersion.cmake
  COMPATIBILITY ${NUV_COMPATIBILITY})
install(FILES
  ${PROJECT_BINARY_DIR}/NuvImgSDK2014DLLConfig.cmake
  ${PROJECT_BINARY_DIR}/NuvImgSDK2014DLLConfigVersion.cmake
  DESTINATION ${package_dir})

set(pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH NUV_PC_TO_INCLUDE /${pc_dir} /${CMAKE_INSTALL_INCLUDEDIR})
# nuv_install_pc(NAME DESCRIPTION DEFINITIONS)
function(nuv_install_pc name description definitions)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/package.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${pc_dir})
endfunction()
set(definitions "")
if(NUV_LIBRARY_TYPE STREQUAL "STATIC")
  set(definitions " -DNUV_STATIC")
endif()
nuv_install_pc(NuvImgSDK2014DLL "${PROJECT_DESCRIPTION}" "${definitions}")
if(NUV_BUILD_C_LIBRARY)
  nuv_install_pc(nuvimgsdk_c "${PROJECT_DESCRIPTION}: the functions for C and other languages" "")
endif()
