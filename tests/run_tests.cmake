# Runs the tests of some sources and counts them:
#   cmake -D SOURCES=a,b -D SYSTEM=... -D COMMAND=emulator,option,program -P run_tests.cmake
# The command is one argument, because CMake takes options of an emulator for its own, even after --.
#
# An emulator that does not start the program may still end with 0. A run counts only if the closing line of the test
# program says that as many tests passed as the sources define: none is missing, and none is skipped.

# Tests within #if belong to the systems whose macros the condition names, or to all others if it negates them.
set(macro_Linux __linux__)
set(macro_Windows _WIN32)
set(macro_WASI __wasi__)
set(macro ${macro_${SYSTEM}})

set(suites "")
set(expected 0)
string(REPLACE "," ";" sources "${SOURCES}")
foreach(source IN LISTS sources)
  file(STRINGS ${source} lines REGEX "^(TEST(_F)?\\(|#if|#endif)")
  set(elsewhere OFF)  # whether the line belongs to another system
  foreach(line IN LISTS lines)
    if(line MATCHES "^#if")
      if(line MATCHES "!defined\\(${macro}\\)" OR (line MATCHES " defined\\((__linux__|_WIN32|__wasi__)\\)" AND NOT
                                                   line MATCHES "defined\\(${macro}\\)"))
        set(elsewhere ON)
      endif()
    elseif(line MATCHES "^#endif")
      set(elsewhere OFF)
    elseif(NOT elsewhere AND line MATCHES "\\(([A-Za-z0-9]+),")
      list(APPEND suites "${CMAKE_MATCH_1}.*")
      math(EXPR expected "${expected} + 1")
    endif()
  endforeach()
endforeach()
list(REMOVE_DUPLICATES suites)
list(JOIN suites ":" filter)

string(REPLACE "," ";" command "${COMMAND}")
execute_process(COMMAND ${command} --gtest_filter=${filter}
  RESULT_VARIABLE result OUTPUT_VARIABLE output ECHO_OUTPUT_VARIABLE)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "The test program ended with: ${result}")
endif()
if(expected EQUAL 0 OR NOT output MATCHES "\\[  PASSED  \\] ${expected} tests?\\.")
  message(FATAL_ERROR "The sources define ${expected} tests; the test program does not say that as many passed")
endif()
