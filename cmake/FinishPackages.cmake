# Run by CPack on the packages it has made. Packs each again so that the same files give the same
# bytes: one time for all (SOURCE_DATE_EPOCH, else that of the Debian changelog), one order, one
# owner. The scripts by which CPack calls ldconfig go: the package has its trigger.
set(epoch ${CPACK_TV_TIME})
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  set(epoch $ENV{SOURCE_DATE_EPOCH})
endif()

foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(tree ${CPACK_TEMPORARY_DIRECTORY}/finish)
  file(REMOVE_RECURSE ${tree})
  execute_process(COMMAND dpkg-deb --raw-extract ${package} ${tree} COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE ${tree}/DEBIAN/postinst ${tree}/DEBIAN/postrm)
  execute_process(COMMAND find ${tree} -type d -exec chmod 755 {} + COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND find ${tree}/DEBIAN -type f -exec chmod 644 {} + COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND find ${tree} -exec touch -h -d @${epoch} {} + COMMAND_ERROR_IS_FATAL ANY)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=${epoch}
      dpkg-deb --root-owner-group -Zxz --threads-max=1 --build ${tree} ${package}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE ${tree})
endforeach()
