# Debian packages by CPack: libquillmark1, libquillmark-dev, quillmark and python3-quillmark. Make them from the preset
# `deb`, which lays files out as Debian does (script/package).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_CONTACT "Quillmark developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL library development python)
if(QUILLMARK_TOOL)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
set(CPACK_COMPONENTS_GROUPING IGNORE)
# Copyright, changelog, compressed manual page: what the packages have and a plain installation has not.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/finish.cmake)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS OFF)
set(same_version "libquillmark1 (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

# Hosts that are built against this version want no older one. The trigger is how Debian has ldconfig called; CPack adds
# scripts that call it as well.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
file(WRITE ${PROJECT_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libquillmark1)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/triggers)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION
"font identification library
Quillmark tells which fonts a file holds: every face with its names, version,
foundry, class, styles and the checksums that identify its data. It reads
TrueType and OpenType fonts, collections, classic Macintosh resource fonts,
and the PostScript families that belong to them.

This package holds the library and its tables.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libquillmark-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${same_version}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
"font identification library (development files)
Quillmark tells which fonts a file holds: every face with its names, version,
foundry, class, styles and the checksums that identify its data.

This package holds the C header, the files for CMake and pkg-config, and the
documentation of the formats.")

# The tool holds the library's code but reads the tables of its package.
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME quillmark)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${same_version}")
set(CPACK_DEBIAN_TOOL_DESCRIPTION
"identify fonts exactly
Tells which fonts files hold: every face with its names, version, foundry,
class, styles and the checksums that identify its data, as a table, JSON, XML
or a property list. It finds copies and conflicts in font libraries, compares
files and says why a file gives no face.")

set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-quillmark)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "libquillmark1 (>= ${PROJECT_VERSION}), python3:any (>= 3.9)")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS quillmark)  # which tells the reasons of `why`
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
  ${PROJECT_SOURCE_DIR}/cmake/debian/postinst ${PROJECT_SOURCE_DIR}/cmake/debian/prerm)
set(CPACK_DEBIAN_PYTHON_DESCRIPTION
"font identification library (Python 3 module)
Quillmark tells which fonts a file holds: every face with its names, version,
foundry, class, styles and the checksums that identify its data.

This package holds the Python module over the library.")

include(CPack)
