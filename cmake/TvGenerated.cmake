# Files in the tree that a generator makes, and the check that they are up to date.

add_custom_target(renew-tables COMMENT "Generated files made anew")

# tv_generated(<program> [ARGS arg...] FOLDER <folder> PATTERN <pattern>)
#
# The target <program>, called with the arguments and a folder, writes files there; those of
# its files that match the pattern are checked in at FOLDER. The target renew-tables writes
# them again. The test generated.<program> (made where tests are) writes them elsewhere and
# compares; a generator that lacks its input exits with 77, and the test is skipped.
function(tv_generated program)
  cmake_parse_arguments(ARG "" "FOLDER;PATTERN" "ARGS" ${ARGN})
  add_custom_target(renew-${program} COMMAND ${program} ${ARG_ARGS} ${ARG_FOLDER} VERBATIM)
  add_dependencies(renew-tables renew-${program})
  set_property(GLOBAL APPEND PROPERTY TV_GENERATORS ${program})
  set_target_properties(renew-${program} PROPERTIES
    TV_ARGS "${ARG_ARGS}" TV_FOLDER ${ARG_FOLDER} TV_PATTERN ${ARG_PATTERN})
endfunction()

# Makes the tests of all generators.
function(tv_generated_tests)
  get_property(programs GLOBAL PROPERTY TV_GENERATORS)
  foreach(program ${programs})
    get_target_property(args renew-${program} TV_ARGS)
    get_target_property(folder renew-${program} TV_FOLDER)
    get_target_property(pattern renew-${program} TV_PATTERN)
    add_test(NAME generated.${program}
      COMMAND ${CMAKE_COMMAND}
        -DSCRATCH=${PROJECT_BINARY_DIR}/generated/${program}
        -DFOLDER=${folder} -DPATTERN=${pattern} -DBUILD=${PROJECT_BINARY_DIR}
        -P ${PROJECT_SOURCE_DIR}/cmake/CheckGenerated.cmake -- $<TARGET_FILE:${program}> ${args})
    set_tests_properties(generated.${program} PROPERTIES LABELS generated TIMEOUT 300
      SKIP_REGULAR_EXPRESSION "The generator cannot run here")
  endforeach()
endfunction()
