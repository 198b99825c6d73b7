# The exported symbols of a shared library: abi/<file> is the reviewed list, the version
# script is made from it, and a test checks that list, objects and library agree.
#
#     tv_export_list(<shared library> <object library> <list>)
function(tv_export_list library objects list)
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${library}.map)
  add_custom_command(OUTPUT ${script}
    COMMAND ${PROJECT_SOURCE_DIR}/abi/make-version-script ${list} ${script}
    DEPENDS ${list} ${PROJECT_SOURCE_DIR}/abi/make-version-script
    VERBATIM)
  add_custom_target(${library}_version_script DEPENDS ${script})
  add_dependencies(${library} ${library}_version_script)
  target_link_options(${library} PRIVATE LINKER:--version-script=${script})
  set_property(TARGET ${library} APPEND PROPERTY LINK_DEPENDS ${script})

  set(responses ${CMAKE_CURRENT_BINARY_DIR}/${library}.objects)
  file(GENERATE OUTPUT ${responses} CONTENT "$<JOIN:$<TARGET_OBJECTS:${objects}>,\n>\n")
  add_custom_target(renew-exports-${library}
    COMMAND ${PROJECT_SOURCE_DIR}/abi/exported-symbols ${responses} > ${list}
    DEPENDS ${objects}
    COMMENT "Writing ${list} from the symbols that are marked for export")
  if(TVOSBASE_BUILD_TESTS AND NOT TVOSBASE_SANITIZE) # sanitizers mark type information of their own
    add_test(NAME abi.${library}
      COMMAND ${PROJECT_SOURCE_DIR}/abi/check-exports
        ${list} ${responses} $<TARGET_FILE:${library}> renew-exports-${library})
    set_tests_properties(abi.${library} PROPERTIES LABELS abi)
  endif()
endfunction()
