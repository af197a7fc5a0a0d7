# Builds the host of one language against the C library, and compares its segments of the photograph with those that
# find_lines prints: cmake -D LANGUAGE=c|cs|pas|rs -D COMPILER=... -D RUNNER=... -D NUV_DIR=... -D LIBRARIES=DIR:DIR
# -D C_LIBRARY_DIR=... -D FIND_LINES=... -D WORK_DIR=... -P host.cmake
function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(source ${NUV_DIR}/bindings/hosts/find_lines.${LANGUAGE})
set(host ${WORK_DIR}/find_lines.exe)
set(picture ${NUV_DIR}/examples/data/camera.bmp)
set(ENV{LD_LIBRARY_PATH} ${LIBRARIES})
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})

if(LANGUAGE STREQUAL "c")
  run(${COMPILER} -std=c99 -Wall -Wextra -pedantic -Werror -I${NUV_DIR}/bindings/c ${source} -o ${host}
    -L${C_LIBRARY_DIR} -lnuvimgsdk_c)
elseif(LANGUAGE STREQUAL "cs")
  run(${COMPILER} -warnaserror -out:${host} ${source})
elseif(LANGUAGE STREQUAL "pas")
  run(${COMPILER} -v0 -Fl${C_LIBRARY_DIR} -FE${WORK_DIR} -o${host} ${source})
elseif(LANGUAGE STREQUAL "rs")
  run(${COMPILER} -D warnings -L ${C_LIBRARY_DIR} ${source} -o ${host})
endif()

execute_process(COMMAND ${RUNNER} ${host} ${picture} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\r\n]+" segments "${output}")
list(SORT segments)

# The columns of find_lines are found by their names. It prints the segments in another order.
execute_process(COMMAND ${FIND_LINES} --csv ${picture} WORKING_DIRECTORY ${WORK_DIR}
  OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\r\n]+" lines "${output}")
list(POP_FRONT lines head)
string(REPLACE "," ";" head "${head}")
set(expected "")
foreach(line IN LISTS lines)
  string(REPLACE "," ";" line "${line}")
  set(segment "")
  foreach(column x1 y1 x2 y2)
    list(FIND head ${column} place)
    list(GET line ${place} value)
    list(APPEND segment ${value})
  endforeach()
  list(JOIN segment "," segment)
  list(APPEND expected ${segment})
endforeach()
list(SORT expected)

list(LENGTH expected count)
if(count LESS 10 OR NOT segments STREQUAL expected)
  message(FATAL_ERROR "The host prints\n${segments}\nand find_lines prints\n${expected}")
endif()
message("${count} segments are equal")
