# The installed tree: libraries, headers, the CMake package TvOsBase and tvosbase.pc.
# Nothing in it holds an absolute path, so it may be moved as a whole. The component runtime is
# what programs need that use the library, development what is needed to build them, tools is
# tvbase (tools/tvbase/CMakeLists.txt).
include(CMakePackageConfigHelpers)

set(tvHeaderDir ${CMAKE_INSTALL_INCLUDEDIR}/tvosbase)
set(tvCMakeDir ${CMAKE_INSTALL_LIBDIR}/cmake/TvOsBase)
set(tvMapFile ${CMAKE_INSTALL_DATADIR}/tvosbase/codepage.map)

set_target_properties(TvOsBase TvPlatformBase PROPERTIES INSTALL_RPATH $ORIGIN)
install(TARGETS TvOsBase TvPlatformBase EXPORT TvOsBaseTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  FILE_SET HEADERS DESTINATION ${tvHeaderDir} COMPONENT development)
install(EXPORT TvOsBaseTargets NAMESPACE TvOsBase:: DESTINATION ${tvCMakeDir}
  COMPONENT development)

configure_package_config_file(cmake/TvOsBaseConfig.cmake.in
  ${PROJECT_BINARY_DIR}/TvOsBaseConfig.cmake INSTALL_DESTINATION ${tvCMakeDir}
  PATH_VARS tvMapFile)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TvOsBaseConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TvOsBaseConfig.cmake
  ${PROJECT_BINARY_DIR}/TvOsBaseConfigVersion.cmake
  DESTINATION ${tvCMakeDir} COMPONENT development)

# tvosbase.pc finds the prefix from where it lies itself.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
  BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig OUTPUT_VARIABLE TV_PC_PREFIX)
configure_file(cmake/tvosbase.pc.in ${PROJECT_BINARY_DIR}/tvosbase.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tvosbase.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(FILES data/codepage.map DESTINATION ${CMAKE_INSTALL_DATADIR}/tvosbase COMPONENT runtime)

# gdb looks for what belongs to a library under the library's own path; that is known only
# when the tree is installed. The printers themselves are found from the library.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_DATADIR BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}
  OUTPUT_VARIABLE tvDataFromLib)
set(TV_GDB_PRINTERS ${tvDataFromLib}/tvosbase/gdb/tvosbase.py)
configure_file(tools/gdb/autoload.py.in ${PROJECT_BINARY_DIR}/autoload-gdb.py @ONLY)
install(FILES tools/gdb/tvosbase.py DESTINATION ${CMAKE_INSTALL_DATADIR}/tvosbase/gdb
  COMPONENT development)
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
  set(tvGdbLibDir ${CMAKE_INSTALL_LIBDIR})
else()
  set(tvGdbLibDir "\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}")
endif()
install(FILES ${PROJECT_BINARY_DIR}/autoload-gdb.py
  DESTINATION "${CMAKE_INSTALL_DATADIR}/gdb/auto-load/${tvGdbLibDir}"
  RENAME libTvOsBase.so.${PROJECT_VERSION}-gdb.py COMPONENT development)
