# The reference of the public headers: cmake --build build/dev --target reference
set(tvReferenceFolder ${PROJECT_BINARY_DIR}/reference)
configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${tvReferenceFolder}/Doxyfile @ONLY)
find_program(tvDoxygen doxygen)
if(tvDoxygen)
  add_custom_target(reference
    COMMAND ${tvDoxygen} ${tvReferenceFolder}/Doxyfile
    COMMAND ${CMAKE_COMMAND} -E echo "${tvReferenceFolder}/html/index.html"
    VERBATIM)
endif()
