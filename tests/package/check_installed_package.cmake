# Installs the build tree into a scratch prefix, then builds and runs a tiny consumer project
# against it twice: once through find_package(facet), once through pkg-config.
set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "command failed (${rc}): ${ARGN}\n${out}\n${err}")
  endif()
endfunction()

run(${CMAKE_COMMAND} --install ${FACET_BUILD_DIR} --prefix ${prefix})

run(${CMAKE_COMMAND} -S ${FACET_CONSUMER_DIR} -B ${WORK_DIR}/consumer
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/consumer)
run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/lib:${prefix}/lib/x86_64-linux-gnu
    ${WORK_DIR}/consumer/consumer)

find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
  file(GLOB_RECURSE pc_files ${prefix}/*/facet.pc)
  list(GET pc_files 0 pc_file)
  get_filename_component(pc_dir ${pc_file} DIRECTORY)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pc_dir}
                          ${PKG_CONFIG} --cflags --libs facet
                  OUTPUT_VARIABLE flags RESULT_VARIABLE rc OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "pkg-config does not know facet")
  endif()
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run(${CXX} ${FACET_CONSUMER_DIR}/main.cpp ${flags} -o ${WORK_DIR}/consumer_pc)
  run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/lib:${prefix}/lib/x86_64-linux-gnu
      ${WORK_DIR}/consumer_pc)
endif()
