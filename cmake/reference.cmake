# The target `docs`: the reference of the public header, as HTML in docs/reference/ of the build tree. What the header
# leaves undescribed fails it.
if(QUILLMARK_TESTS)
  find_package(Doxygen REQUIRED)
else()
  find_package(Doxygen QUIET)
endif()
if(DOXYGEN_FOUND)
  configure_file(docs/api/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
  add_custom_target(docs COMMAND Doxygen::doxygen ${PROJECT_BINARY_DIR}/Doxyfile VERBATIM
    COMMENT "Writing the reference of the header")
endif()
