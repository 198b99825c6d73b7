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

# How the installed libraries are linked. Sanitizers link theirs in ways of their own.
if(TVOSBASE_BUILD_TESTS AND NOT TVOSBASE_SANITIZE)
  add_test(NAME abi.linking
    COMMAND ${PROJECT_SOURCE_DIR}/abi/check-linking ${PROJECT_BINARY_DIR} ${PROJECT_VERSION_MAJOR})
  set_tests_properties(abi.linking PROPERTIES LABELS abi)
endif()

set(tvPublicFolders ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/platform/include)

# Sizes, fields and virtual tables of the public classes: abi/class-layouts.txt, from g++'s
# class dump and what gdb reads of an object file.
find_program(tvGdb gdb)
if(tvGdb AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(tvLayouts ${PROJECT_SOURCE_DIR}/abi/class-layouts.txt)
  set(tvListLayouts ${PROJECT_SOURCE_DIR}/abi/class-layouts ${CMAKE_CXX_COMPILER} ${tvGdb}
    ${tvPublicFolders})
  add_custom_target(renew-class-layouts
    COMMAND ${tvListLayouts} > ${PROJECT_BINARY_DIR}/class-layouts.txt
    COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_BINARY_DIR}/class-layouts.txt ${tvLayouts}
    COMMENT "Writing ${tvLayouts} from the public headers"
    VERBATIM)
  if(TVOSBASE_BUILD_TESTS)
    add_test(NAME abi.class_layouts
      COMMAND ${PROJECT_SOURCE_DIR}/abi/check-class-layouts ${tvLayouts} ${tvListLayouts})
    set_tests_properties(abi.class_layouts PROPERTIES LABELS abi)
  endif()
endif()

# The libraries as modules compiled earlier know them: abi/baseline/, compared by types as well.
# Sanitizers change what the compiler says of the library, and compilers say it differently.
add_custom_target(renew-abi-baseline COMMENT "Writing abi/baseline/ from the libraries")
function(tv_abi_baseline library)
  set(baseline ${PROJECT_SOURCE_DIR}/abi/baseline/lib${library}.abi)
  add_custom_target(renew-abi-baseline-${library}
    COMMAND ${PROJECT_SOURCE_DIR}/abi/describe-interface
      $<TARGET_FILE:${library}> ${tvPublicFolders} > ${PROJECT_BINARY_DIR}/lib${library}.abi
    COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_BINARY_DIR}/lib${library}.abi ${baseline}
    DEPENDS ${library}
    VERBATIM)
  add_dependencies(renew-abi-baseline renew-abi-baseline-${library})
  if(TVOSBASE_BUILD_TESTS AND NOT TVOSBASE_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_test(NAME abi.baseline_${library}
      COMMAND ${PROJECT_SOURCE_DIR}/abi/check-baseline
        $<TARGET_FILE:${library}> ${baseline} ${tvPublicFolders})
    set_tests_properties(abi.baseline_${library} PROPERTIES LABELS abi TIMEOUT 300 SKIP_RETURN_CODE 77)
  endif()
endfunction()
