# What a room's or unit's CMakeLists.txt calls. Paths are relative to the caller's folder.

# kelspar_room(FOLDER HEADERS a.h ... SOURCES a.cpp ...)
# Adds the folder's code to the library; HEADERS are public and are installed.
function(kelspar_room folder)
  cmake_parse_arguments(ARG "" "" "HEADERS;SOURCES" ${ARGN})
  list(TRANSFORM ARG_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  target_sources(kelspar PRIVATE ${ARG_SOURCES})
  if(ARG_HEADERS)
    list(TRANSFORM ARG_HEADERS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    target_sources(kelspar PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}
                   FILES ${ARG_HEADERS})
  endif()
endfunction()

# kelspar_unit_operations(UNIT)
# UNIT registers its operations before main(). A static library's users link the symbol by name, or
# the linker would leave the unit out.
function(kelspar_unit_operations unit)
  if(NOT BUILD_SHARED_LIBS)
    target_link_options(kelspar INTERFACE LINKER:-u,kelspar_operations_${unit})
  endif()
endfunction()

# kelspar_test(NAME a_test.cpp ... [LIBRARIES lib ...])
# One test program and one CTest test of that name.
function(kelspar_test name)
  if(NOT KELSPAR_TESTS)
    return()
  endif()
  cmake_parse_arguments(ARG "" "" "LIBRARIES" ${ARGN})
  add_executable(${name}_test ${ARG_UNPARSED_ARGUMENTS})
  target_link_libraries(${name}_test PRIVATE kelspar kelspar_compiler GTest::gmock_main
                        ${KELSPAR_DEPENDENCIES} ${ARG_LIBRARIES})
  target_compile_definitions(${name}_test PRIVATE
    KELSPAR_SOURCE_DIR="${PROJECT_SOURCE_DIR}" KELSPAR_BINARY_DIR="${PROJECT_BINARY_DIR}")
  if(IS_DIRECTORY ${KELSPAR_CORPUS})
    get_filename_component(corpus ${KELSPAR_CORPUS} ABSOLUTE)
    target_compile_definitions(${name}_test PRIVATE KELSPAR_CORPUS="${corpus}")
  endif()
  add_test(NAME ${name} COMMAND ${name}_test)
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()

# kelspar_fuzz(NAME target.cpp [LIBRARIES lib ...])
# A libFuzzer program fuzz_NAME under KELSPAR_FUZZ. In other builds its seeds, the files of
# fuzz/seeds/NAME, are replayed once as the CTest test fuzz_NAME.
function(kelspar_fuzz name source)
  cmake_parse_arguments(ARG "" "" "LIBRARIES" ${ARGN})
  set(seeds ${PROJECT_SOURCE_DIR}/fuzz/seeds/${name})
  add_executable(fuzz_${name} ${source})
  target_link_libraries(fuzz_${name} PRIVATE kelspar kelspar_compiler ${KELSPAR_DEPENDENCIES}
                        ${ARG_LIBRARIES})
  if(KELSPAR_FUZZ)
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
    add_test(NAME fuzz_${name} COMMAND fuzz_${name} -runs=0 -rss_limit_mb=4096 -malloc_limit_mb=16384
             ${seeds})
  else()
    target_sources(fuzz_${name} PRIVATE ${PROJECT_SOURCE_DIR}/fuzz/replay_main.cpp)
    add_test(NAME fuzz_${name} COMMAND fuzz_${name} ${seeds})
  endif()
endfunction()

# kelspar_bench(NAME a_bench.cpp ... [LIBRARIES lib ...])
function(kelspar_bench name)
  cmake_parse_arguments(ARG "" "" "LIBRARIES" ${ARGN})
  add_executable(bench_${name} ${ARG_UNPARSED_ARGUMENTS})
  target_link_libraries(bench_${name} PRIVATE kelspar kelspar_compiler benchmark::benchmark_main
                        ${KELSPAR_DEPENDENCIES} ${ARG_LIBRARIES})
endfunction()
