# What `cmake --install` copies, in four components: library (with its tables), development, tool, python. Nothing that
# is installed knows its prefix, so an installed tree may be moved.
include(CMakePackageConfigHelpers)

set(QUILLMARK_PYTHON_DIR lib/python3/dist-packages CACHE STRING "Where the Python module goes, below the prefix")
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/quillmark)

install(TARGETS quillmark EXPORT quillmark-targets
  LIBRARY COMPONENT library NAMELINK_COMPONENT development)
install(FILES include/quillmark/quillmark.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quillmark COMPONENT development)

# find_package(quillmark) gives quillmark::quillmark. The SONAME's number is the interface: any 1.x serves a host of an
# earlier 1.x.
install(EXPORT quillmark-targets NAMESPACE quillmark:: DESTINATION ${package_dir} COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/quillmark-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES cmake/quillmark-config.cmake ${PROJECT_BINARY_DIR}/quillmark-config-version.cmake
  DESTINATION ${package_dir} COMPONENT development)

# The .pc file finds the prefix from where it lies. Folders that were configured absolute stand as they are.
file(RELATIVE_PATH pc_up ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" pc_up ${pc_up})
cmake_path(APPEND pc_libdir "\${prefix}" ${CMAKE_INSTALL_LIBDIR})
cmake_path(APPEND pc_includedir "\${prefix}" ${CMAKE_INSTALL_INCLUDEDIR})
configure_file(cmake/quillmark.pc.in ${PROJECT_BINARY_DIR}/quillmark.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quillmark.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# The relative links of the pages hold among these.
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(FILES bindings/python/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR}/bindings/python COMPONENT development)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development
  FILES_MATCHING PATTERN *.md PATTERN *.c PATTERN *.cc PATTERN api EXCLUDE)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT license)

if(QUILLMARK_TOOL)
  install(FILES man/quillmark.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  install(FILES completions/quillmark.bash RENAME quillmark
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tool)
  install(FILES completions/_quillmark DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT tool)
endif()

install(DIRECTORY bindings/python/quillmark DESTINATION ${QUILLMARK_PYTHON_DIR} COMPONENT python
  FILES_MATCHING PATTERN *.py PATTERN py.typed PATTERN __pycache__ EXCLUDE)
