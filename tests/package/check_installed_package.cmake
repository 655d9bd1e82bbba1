# Installs the build tree into a scratch prefix, then builds and runs a tiny consumer project
# against it twice: once through find_package(facet) (CMake's rpath finds the library), once
# through pkg-config in C++20 (the package must not force its own standard) with the rpath
# README.md tells pkg-config users to add. Neither run gets LD_LIBRARY_PATH. With FACET_TOOL,
# the installed facet tool must run from the prefix as it is.
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
run(${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${WORK_DIR}/consumer/consumer)

if(FACET_TOOL)
  run(${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${prefix}/bin/facet --help)
endif()

find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
  file(GLOB_RECURSE pc_files ${prefix}/*/facet.pc)
  list(GET pc_files 0 pc_file)
  get_filename_component(pc_dir ${pc_file} DIRECTORY)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pc_dir}
                          ${PKG_CONFIG} --cflags --libs facet
                  OUTPUT_VARIABLE flags RESULT_VARIABLE rc OUTPUT_STRIP_TRAILING_WHITESPACE)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pc_dir}
                          ${PKG_CONFIG} --variable=libdir facet
                  OUTPUT_VARIABLE libdir RESULT_VARIABLE rc_libdir OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT rc EQUAL 0 OR NOT rc_libdir EQUAL 0)
    message(FATAL_ERROR "pkg-config does not know facet")
  endif()
  if(flags MATCHES "-std=")
    message(FATAL_ERROR "facet.pc sets the consumer's language standard: ${flags}")
  endif()
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run(${CXX} -std=c++20 -DFACET_CONSUMER_CXX20 ${FACET_CONSUMER_DIR}/main.cpp ${flags}
      -Wl,-rpath,${libdir} -o ${WORK_DIR}/consumer_pc)
  run(${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${WORK_DIR}/consumer_pc)
endif()
