# Checks of the sources as tests of their own.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
find_program(CLANG_FORMAT NAMES clang-format-14 REQUIRED)
find_program(CLANG_TIDY NAMES clang-tidy-14 REQUIRED)
find_program(CLANG_CXX NAMES clang++-14 REQUIRED)

add_test(NAME include-order COMMAND Python3::Interpreter
         ${CMAKE_CURRENT_SOURCE_DIR}/check_includes.py ${CMAKE_SOURCE_DIR}/src)
add_test(NAME planted-includes COMMAND Python3::Interpreter
         ${CMAKE_CURRENT_SOURCE_DIR}/check_includes_test.py)

file(GLOB_RECURSE own_sources CONFIGURE_DEPENDS
     ${CMAKE_SOURCE_DIR}/src/*.cpp ${CMAKE_SOURCE_DIR}/src/*.h
     ${CMAKE_SOURCE_DIR}/demo/*.cpp ${CMAKE_SOURCE_DIR}/tests/*.cpp
     ${CMAKE_SOURCE_DIR}/tests/*.h ${CMAKE_SOURCE_DIR}/bench/*.cpp)
add_test(NAME format COMMAND ${CLANG_FORMAT} --dry-run --Werror ${own_sources})

# The program's own sources; tests and benchmarks are left to the compiler's warnings. One test, on
# all cores, which asks the linter only about sources that it hasn't found clean before.
file(GLOB_RECURSE tidy_sources CONFIGURE_DEPENDS
     ${CMAKE_SOURCE_DIR}/src/*.cpp ${CMAKE_SOURCE_DIR}/demo/*.cpp)
add_test(NAME tidy COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/run_tidy.py
         ${CLANG_TIDY} ${CMAKE_SOURCE_DIR} ${CMAKE_BINARY_DIR} ${tidy_sources})
cmake_host_system_information(RESULT cores QUERY NUMBER_OF_LOGICAL_CORES)
set_tests_properties(tidy PROPERTIES TIMEOUT 1500 PROCESSORS ${cores} COST 1000)

# Fuzz targets: fuzz/<name>_fuzz.cpp. They need clang's own runtime, so they are a small build of
# their own. What a run finds goes to the build folder; the corpus is only read.
include(ExternalProject)
ExternalProject_Add(fuzz
  SOURCE_DIR ${CMAKE_CURRENT_SOURCE_DIR}/fuzz
  BINARY_DIR ${CMAKE_BINARY_DIR}/fuzz
  CMAKE_ARGS -DCMAKE_CXX_COMPILER=${CLANG_CXX} -DCMAKE_BUILD_TYPE=RelWithDebInfo
             "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -g1"
  BUILD_ALWAYS ON
  INSTALL_COMMAND "")
set(fuzz_seconds 5)
file(GLOB fuzz_targets CONFIGURE_DEPENDS fuzz/*_fuzz.cpp)
foreach(source ${fuzz_targets})
  get_filename_component(name ${source} NAME_WE)
  string(REPLACE "_fuzz" "" corpus ${name})
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz/found/${corpus})
  add_test(NAME fuzz/${corpus}
           COMMAND ${CMAKE_BINARY_DIR}/fuzz/${name} -max_total_time=${fuzz_seconds}
                   -timeout=10 -rss_limit_mb=2048 -verbosity=0 -print_final_stats=1
                   ${CMAKE_BINARY_DIR}/fuzz/found/${corpus}
                   ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/corpus/${corpus})
endforeach()
