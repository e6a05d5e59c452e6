# doctest comes from the distribution as a native package. Its one header is copied out, so that the
# native include folder never reaches the cross build.
find_path(DOCTEST_NATIVE_INCLUDE doctest/doctest.h PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(COPY ${DOCTEST_NATIVE_INCLUDE}/doctest/doctest.h
     DESTINATION ${CMAKE_BINARY_DIR}/third-party/doctest)

add_library(doctest INTERFACE)
target_include_directories(doctest SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/third-party)
target_compile_definitions(doctest INTERFACE
  DOCTEST_CONFIG_NO_MULTITHREADING DOCTEST_CONFIG_SUPER_FAST_ASSERTS)

find_file(DOCTEST_DISCOVERY doctest.cmake
          PATHS /usr/lib/cmake/doctest /usr/lib64/cmake/doctest NO_CMAKE_FIND_ROOT_PATH REQUIRED)
include(${DOCTEST_DISCOVERY})

# What a test program reads stands beside it, so that both can be taken to another machine.
function(beside_tests program file)
  set(copy ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${file})
  add_custom_command(OUTPUT ${copy}
    COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_SOURCE_DIR}/${file} ${copy}
    DEPENDS ${file}
    VERBATIM)
  add_custom_target(beside-${program} DEPENDS ${copy})
  add_dependencies(${program} beside-${program})
endfunction()

# One executable per room of the house; each of its test cases is a test of its own for CTest. A test
# needs a desktop, clipboard and registry for itself: as many run at once as there are Wine prefixes
# in the resource file that CTest is given. Without one, CTest must run them one after another.
function(quillet_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "COST" "SOURCES;LIBRARIES")
  if(NOT arg_COST)
    set(arg_COST 0)
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE
    quillet-flags test-support quillet-old-windows ${arg_LIBRARIES})
  # What is tested is built as it ships; the tests themselves only have to be built quickly.
  target_compile_options(${name} PRIVATE -O0 $<$<CONFIG:Release>:-g0>)
  doctest_discover_tests(${name} PROPERTIES TIMEOUT 120 COST ${arg_COST}
                         RESOURCE_GROUPS wine:1)
endfunction()
