# Build options and the compile flags that every target of this project shares.

option(TVOSBASE_BUILD_TOOLS "Build tvbase and the table generators" ${PROJECT_IS_TOP_LEVEL})
option(TVOSBASE_BUILD_TESTS "Build the tests, which need the tools" ${PROJECT_IS_TOP_LEVEL})
option(TVOSBASE_BUILD_BENCH "Build the benchmarks" OFF)
option(TVOSBASE_BUILD_COUNTS "Build the program whose instructions bench/counts counts" OFF)
option(TVOSBASE_BUILD_FUZZ "Build the fuzz targets (clang only)" OFF)
option(TVOSBASE_WERROR "Treat compiler warnings as errors" OFF)
option(TVOSBASE_CHECK_STRUCTURES "Run the structure checkers after each change" OFF)
option(TVOSBASE_MEMCHECK "Run the test programs under valgrind memcheck" OFF)
option(TVOSBASE_DEBIAN_PACKAGES "Install what belongs into Debian packages, and make them (target package)" OFF)
set(TVOSBASE_SANITIZE "" CACHE STRING "Sanitizers for every target, for example address,undefined")
set(TVOSBASE_HEAP_FIRST_ADDRESS "" CACHE STRING
  "First address tried for the heap's range; empty for the documented one. Memory tools need another")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

include(GNUInstallDirs)

# What ships is the same wherever it is built. In other builds debuggers look for the sources
# where they lie.
add_library(tv_flags INTERFACE)
target_compile_options(tv_flags INTERFACE
  $<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>)
target_compile_options(tv_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wundef -Wcast-align
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
  $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>)
if(TVOSBASE_WERROR)
  target_compile_options(tv_flags INTERFACE -Werror)
endif()
if(TVOSBASE_SANITIZE)
  target_compile_options(tv_flags INTERFACE
    -fsanitize=${TVOSBASE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tv_flags INTERFACE -fsanitize=${TVOSBASE_SANITIZE})
endif()

# Flags of the two shared libraries: one copy of every object in the process, and
# nothing that keeps dlclose from unloading them.
add_library(tv_shared_flags INTERFACE)
target_link_libraries(tv_shared_flags INTERFACE tv_flags)
target_compile_options(tv_shared_flags INTERFACE
  $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<CXX_COMPILER_ID:GNU>>:-fno-gnu-unique>)
target_link_options(tv_shared_flags INTERFACE
  LINKER:-Bsymbolic-functions LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
if(NOT TVOSBASE_SANITIZE)
  target_link_options(tv_shared_flags INTERFACE LINKER:-z,defs)
endif()
if(TVOSBASE_BUILD_FUZZ)
  # The fuzzer sees which branches of the libraries an input takes.
  target_compile_options(tv_shared_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
