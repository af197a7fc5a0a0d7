# Installs the build tree into a scratch prefix, then configures, builds and runs the consumer against it.
function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

file(GLOB_RECURSE pc ${prefix}/*.pc)
cmake_path(GET pc PARENT_PATH pkg_config_dir)
set(ENV{PKG_CONFIG_PATH} ${pkg_config_dir})
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${CONSUMER_DIR} -B ${WORK_DIR}/build
  -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)

file(GLOB_RECURSE library ${prefix}/*NuvImgSDK2014DLL.so)
cmake_path(GET library PARENT_PATH library_dir)
set(ENV{LD_LIBRARY_PATH} ${library_dir})
run(${WORK_DIR}/build/by_cmake)
run(${WORK_DIR}/build/by_pkg_config)
