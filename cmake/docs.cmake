# The API reference: `cmake --build <build dir> --target docs` runs Doxygen (Debian's doxygen
# package) over the public headers and docs/mainpage.md into <build dir>/docs/html. Any Doxygen
# warning fails the target. Without Doxygen the target is simply absent, and so it is when facet
# is a subproject (the name is the host project's to use).
if(NOT PROJECT_IS_TOP_LEVEL)
  return()
endif()
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
  message(STATUS "Doxygen not found: no 'docs' target")
  return()
endif()

set(FACET_DOCS_OUTPUT ${PROJECT_BINARY_DIR}/docs)
configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${FACET_DOCS_OUTPUT}/Doxyfile @ONLY)
add_custom_target(docs
  COMMAND ${DOXYGEN_EXECUTABLE} ${FACET_DOCS_OUTPUT}/Doxyfile
  COMMAND ${CMAKE_COMMAND} -E echo "API reference: ${FACET_DOCS_OUTPUT}/html/index.html"
  WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
  COMMENT "Building the API reference with Doxygen"
  VERBATIM)
