# run.sh prints its help without a build, so it has its own copy of the text. The copy must name the options of
# find_lines.
foreach(program RUN HOST)
  execute_process(COMMAND ${${program}} --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "--[a-z-]+" options_${program} "${help}")
  list(SORT options_${program})
endforeach()
if(NOT options_RUN OR NOT options_RUN STREQUAL options_HOST)
  message(FATAL_ERROR "run.sh names the options ${options_RUN}, and find_lines ${options_HOST}")
endif()
