# The Debian packages, one a component; docs/packaging.md says how to make them.
#
# Version, maintainer and time are those of the topmost entry of packaging/debian/changelog.
set(tvDebian ${PROJECT_SOURCE_DIR}/packaging/debian)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${tvDebian}/changelog)
find_program(tvParseChangelog dpkg-parsechangelog REQUIRED)
function(tv_debian_changelog field result)
  execute_process(COMMAND ${tvParseChangelog} -l ${tvDebian}/changelog -S ${field}
    OUTPUT_VARIABLE value OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(${result} ${value} PARENT_SCOPE)
endfunction()
tv_debian_changelog(Version tvDebianVersion)
tv_debian_changelog(Maintainer CPACK_DEBIAN_PACKAGE_MAINTAINER)
tv_debian_changelog(Timestamp tvDebianTime)
if(NOT tvDebianVersion MATCHES "^${PROJECT_VERSION}-([0-9]+)$")
  message(FATAL_ERROR "packaging/debian/changelog is about ${tvDebianVersion}, this is ${PROJECT_VERSION}")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE ${CMAKE_MATCH_1})

# Files that only packages have. tv_compressed(<from> <to>) compresses without name and time.
find_program(tvGzip gzip REQUIRED)
set(tvPackageFiles ${PROJECT_BINARY_DIR}/packaging)
file(MAKE_DIRECTORY ${tvPackageFiles})
set(tvCompressed)
macro(tv_compressed from to)
  add_custom_command(OUTPUT ${tvPackageFiles}/${to}
    COMMAND ${tvGzip} -9nc ${from} > ${tvPackageFiles}/${to}
    DEPENDS ${from} VERBATIM)
  list(APPEND tvCompressed ${tvPackageFiles}/${to})
endmacro()
tv_compressed(${tvDebian}/changelog changelog.Debian.gz)
tv_compressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog.gz)
tv_compressed(${PROJECT_SOURCE_DIR}/docs/tvbase.1 tvbase.1.gz)
add_custom_target(tv_package_files ALL DEPENDS ${tvCompressed})
install(FILES ${tvPackageFiles}/tvbase.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)

# tv_debian_package(<component> <name> <section> <description>); the description's first line is
# its summary.
macro(tv_debian_package component name section description)
  string(TOUPPER ${component} key)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${key}_DESCRIPTION "${description}")
  install(FILES ${tvDebian}/copyright ${tvPackageFiles}/changelog.Debian.gz ${tvPackageFiles}/changelog.gz
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
endmacro()

set(tvAbout "TvOsBase is the operating-system base layer of a desktop CAD application: a C++
library for text in drawing code pages, correctly rounded numbers, formatted
output and input with drawing units, streams and files, and a pooled heap.
")
set(tvRuntime libtvosbase${PROJECT_VERSION_MAJOR})
tv_debian_package(runtime ${tvRuntime} libs "base library of a CAD application
${tvAbout}
This package holds the shared libraries and the code page map file, which
programs need that use them.")
tv_debian_package(development libtvosbase-dev libdevel "base library of a CAD application (development files)
${tvAbout}
This package holds the headers, the CMake package TvOsBase, tvosbase.pc, and
what gdb shows of the library's values.")
tv_debian_package(tools tvosbase-tools utils "drawing text in code pages and UTF-8, from a terminal
${tvAbout}
This package holds tvbase, which converts drawing text between code pages and
UTF-8, reads and writes inline escapes, numbers and lengths with units, and
shows code page tables.")

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_PACKAGE_NAME tvosbase)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # would be put before each package's own
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_OUTPUT_FILE_PREFIX ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_SET_DESTDIR ON)                 # what gdb looks for lies under the library's final path
set(CPACK_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})

# The packages are of one source and go together. A newer library serves older modules.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${tvDebian}/triggers)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${tvRuntime} (= ${tvDebianVersion})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS gdb)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${tvRuntime} (= ${tvDebianVersion})")

set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/FinishPackages.cmake)
set(CPACK_TV_TIME ${tvDebianTime})
include(CPack)
