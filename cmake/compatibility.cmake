# Which versions of the library a host can exchange without a new build. docs/abi.md states the promise.

# nuv_compatibility(VERSION soversion compatibility): the number in the SONAME, and the rule of the package file, which
# CMake knows by a name. They agree: the number changes exactly when the rule refuses the newer version.
function(nuv_compatibility version soversion compatibility)
  string(REGEX MATCH "^([0-9]+)\\.([0-9]+)" number ${version})
  if(CMAKE_MATCH_1 EQUAL 0)
    set(${soversion} ${number} PARENT_SCOPE)
    set(${compatibility} SameMinorVersion PARENT_SCOPE)
  else()
    set(${soversion} ${CMAKE_MATCH_1} PARENT_SCOPE)
    set(${compatibility} SameMajorVersion PARENT_SCOPE)
  endif()
endfunction()
