# The names that hosts built by MSVC link to.
#
# Each function of the DLL has a second name, which is the one that MSVC gives it. MinGW exports the first names
# because of NUV_API; a module definition file adds the second ones as aliases. From the same file comes an import
# library for the linker of MSVC. All names are those of boundary/boundary.json.

set(boundary ${PROJECT_SOURCE_DIR}/boundary/boundary.json)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${boundary})
file(READ ${boundary} description)
math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")

# nuv_symbols(RESULT PLATFORM): the symbols of all functions on the platform.
function(nuv_symbols result platform)
  string(REGEX MATCHALL "\"${platform}\": *\"[^\"]+\"" symbols "${description}")
  list(TRANSFORM symbols REPLACE "^.*\"([^\"]+)\"$" "\\1")
  set(${result} ${symbols} PARENT_SCOPE)
endfunction()
nuv_symbols(mingw_symbols mingw${bits})
nuv_symbols(msvc_symbols msvc${bits})
list(LENGTH mingw_symbols count)
list(LENGTH msvc_symbols msvc_count)
if(count EQUAL 0 OR NOT count EQUAL msvc_count)
  message(FATAL_ERROR "${boundary}: ${count} symbols for MinGW, and ${msvc_count} for MSVC")
endif()

# The linker adds the underscore of 32-bit symbols itself.
if(bits EQUAL 32)
  list(TRANSFORM mingw_symbols REPLACE "^__Z" "_Z")
endif()
set(aliases "")
foreach(msvc mingw IN ZIP_LISTS msvc_symbols mingw_symbols)
  string(APPEND aliases "  \"${msvc}\" = ${mingw}\n")
endforeach()
set(definition ${PROJECT_BINARY_DIR}/NuvImgSDK2014DLL.def)
file(GENERATE OUTPUT ${definition} CONTENT "LIBRARY NuvImgSDK2014DLL.dll\nEXPORTS\n${aliases}")
target_sources(NuvImgSDK2014DLL PRIVATE ${definition})

# The import library of MinGW has another name, libNuvImgSDK2014DLL.dll.a.
find_program(NUV_LLVM_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14)
if(NUV_LLVM_DLLTOOL)
  set(import_library ${PROJECT_BINARY_DIR}/NuvImgSDK2014DLL.lib)
  set(machine i386)
  if(bits EQUAL 64)
    set(machine i386:x86-64)
  endif()
  add_custom_command(OUTPUT ${import_library}
    COMMAND ${NUV_LLVM_DLLTOOL} -m ${machine} -d ${definition} -l ${import_library}
    DEPENDS ${definition}
    VERBATIM)
  add_custom_target(nuv_import_library ALL DEPENDS ${import_library})
  install(FILES ${import_library} DESTINATION ${CMAKE_INSTALL_LIBDIR})
else()
  message(WARNING "Without llvm-dlltool (Debian package llvm), there is no import library for MSVC.")
endif()
