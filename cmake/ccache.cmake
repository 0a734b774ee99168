# What was compiled before, in this clone or in another one, comes out of the user's cache. Paths
# below the clone count from the build folder, so that all clones share what they compile alike.
find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  get_filename_component(clone ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
  set(CMAKE_CXX_COMPILER_LAUNCHER env CCACHE_BASEDIR=${clone} CCACHE_NOHASHDIR=1 ${CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${CMAKE_CXX_COMPILER_LAUNCHER})
  # What comes out of the cache names no other clone's folder to a debugger.
  add_compile_options(-fdebug-prefix-map=${CMAKE_BINARY_DIR}=.)
endif()
