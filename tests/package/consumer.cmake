# Installs a build tree into a scratch prefix, then configures, builds and runs the consumers against it:
# cmake -D BUILD_DIR=... -D NUV_DIR=... -D WORK_DIR=... -D CXX=... -D GENERATOR=... -P consumer.cmake
function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Writes what stands in the first block of README.md in that language.
function(extract language file)
  file(READ ${NUV_DIR}/README.md text)
  set(begin "\n```${language}\n")
  string(FIND "${text}" "${begin}" place)
  if(place EQUAL -1)
    message(FATAL_ERROR "README.md has no block of ${language}")
  endif()
  string(LENGTH "${begin}" length)
  math(EXPR place "${place} + ${length}")
  string(SUBSTRING "${text}" ${place} -1 text)
  string(FIND "${text}" "\n```\n" length)
  string(SUBSTRING "${text}" 0 ${length} text)
  file(WRITE ${file} "${text}\n")
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
file(GLOB_RECURSE licence ${prefix}/share/*/LICENSE)
if(NOT licence)
  message(FATAL_ERROR "LICENSE is not installed")
endif()

extract(cpp ${WORK_DIR}/readme/host.cpp)
extract(cmake ${WORK_DIR}/readme/host.cmake)
file(COPY_FILE ${NUV_DIR}/examples/data/coins.bmp ${WORK_DIR}/readme/part.bmp)

file(GLOB_RECURSE pc ${prefix}/*/NuvImgSDK2014DLL.pc)
cmake_path(GET pc PARENT_PATH pkg_config_dir)
set(ENV{PKG_CONFIG_PATH} ${pkg_config_dir})
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${CMAKE_CURRENT_LIST_DIR} -B ${WORK_DIR}/build -DREADME_DIR=${WORK_DIR}/readme
  -DNUV_DIR=${NUV_DIR}
  -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)

# CMake writes the place of the library into the programs, so they need no further setting.
foreach(way by_cmake by_pkg_config)
  run(${WORK_DIR}/build/cpp_${way})
  run(${WORK_DIR}/build/c_${way} ${NUV_DIR}/examples/data/camera.bmp OUTPUT_QUIET)
endforeach()
execute_process(COMMAND ${WORK_DIR}/build/your_host WORKING_DIRECTORY ${WORK_DIR}/readme
  OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
if(NOT output MATCHES "object at \\([0-9]+, [0-9]+\\), area [0-9]+, perimeter [0-9]+\n")
  message(FATAL_ERROR "The README's host finds no object: ${output}")
endif()
