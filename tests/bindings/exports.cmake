# The C library exports the plain names of the description and nuv_free, and nothing else:
# cmake -D NM=... -D LIBRARY=... -D DESCRIPTION=... -P exports.cmake
file(STRINGS ${DESCRIPTION} described REGEX "^ +\"plain_name\": ")
list(TRANSFORM described REPLACE "^ +\"plain_name\": \"(.*)\",?$" "\\1")
list(LENGTH described count)
if(NOT count EQUAL 461)
  message(FATAL_ERROR "The description has ${count} plain names, not 461")
endif()
list(APPEND described nuv_free)

execute_process(COMMAND ${NM} -D --defined-only --format=posix ${LIBRARY}
  OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" exported "${output}")
list(TRANSFORM exported REPLACE " .*" "")

set(missing ${described})
list(REMOVE_ITEM missing ${exported})
set(added ${exported})
list(REMOVE_ITEM added ${described})
if(missing OR added)
  message(FATAL_ERROR "Missing from the C library: ${missing}\nNot described: ${added}")
endif()
