# The target api_doc makes the reference of the exported operations: api/index.html in the build folder. Everything that
# Doxygen complains about is an error.
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
  return()
endif()
set(api_doc_folder ${PROJECT_BINARY_DIR}/api)
set(api_doc_headers "${PROJECT_SOURCE_DIR}/manageability/yang/framework/mapping/include \
${PROJECT_SOURCE_DIR}/platform/include ${PROJECT_SOURCE_DIR}/platform/control")
configure_file(docs/Doxyfile.in Doxyfile @ONLY)
add_custom_target(api_doc COMMAND ${CMAKE_COMMAND} -E make_directory ${api_doc_folder}
                  COMMAND Doxygen::doxygen Doxyfile WORKING_DIRECTORY ${PROJECT_BINARY_DIR} VERBATIM)
