# Puts this project into a parent project in two ways: from its directory, as a static library, and fetched from a
# repository, as a shared one. With several build types, the commands that compile the library are checked: they use -O3
# in every type but Debug. The last -O option counts. The Debug build is finished, and its host runs. The static library is
# installed and used, too.
function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Builds the parent with these options in a directory of this name.
function(check_parent name)
  set(build ${WORK_DIR}/${name})
  foreach(type "" Release RelWithDebInfo MinSizeRel Custom Debug)
    run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${PARENT_DIR} -B ${build} ${ARGN} -DCMAKE_CXX_COMPILER=${CXX}
      -DCMAKE_BUILD_TYPE=${type})
    set(expected "-O3")
    if(type STREQUAL "Debug")
      set(expected "")
    endif()
    file(STRINGS ${build}/compile_commands.json commands REGEX "\"command\": .*/src/[a-z]+/[a-z_0-9]+\\.cpp")
    list(LENGTH commands count)
    if(count LESS 80)
      message(FATAL_ERROR "Only ${count} sources of the library are compiled")
    endif()
    foreach(command IN LISTS commands)
      set(last "")
      if(command MATCHES "^.* (-O[0-9a-z]*) ")
        set(last ${CMAKE_MATCH_1})
      endif()
      if(NOT last STREQUAL expected)
        message(FATAL_ERROR "With the build type '${type}', '${last}' is in effect: ${command}")
      endif()
    endforeach()
  endforeach()
  run(${CMAKE_COMMAND} --build ${build})
  run(${build}/host)
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
check_parent(directory -DNUV_DIR=${NUV_DIR} -DBUILD_SHARED_LIBS=OFF -DNUV_BUILD_C_LIBRARY=ON)
run(${CMAKE_COMMAND} -DBUILD_DIR=${WORK_DIR}/directory -DNUV_DIR=${NUV_DIR} -DWORK_DIR=${WORK_DIR}/installed
  -DCXX=${CXX} -DGENERATOR=${GENERATOR} -P ${CMAKE_CURRENT_LIST_DIR}/consumer.cmake)

# The sources as they are now, which may differ from the last commit.
set(repository ${WORK_DIR}/repository)
foreach(name CMakeLists.txt LICENSE bindings boundary cmake include src)
  if(EXISTS ${NUV_DIR}/${name})
    file(COPY ${NUV_DIR}/${name} DESTINATION ${repository})
  endif()
endforeach()
set(git git -C ${repository} -c user.name=test -c user.email=test@localhost)
run(${git} init --quiet --initial-branch=main)
run(${git} add .)
run(${git} commit --quiet --message=sources)
check_parent(fetched -DNUV_REPOSITORY=file://${repository})
