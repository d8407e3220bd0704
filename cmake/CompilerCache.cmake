# A compiler cache makes a second build of the same tree nearly free; the
# build works the same without one.
find_program(KELMORA_CCACHE ccache)
if(KELMORA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Paths below the checkout do not count, so a second checkout finds what the
  # first one compiled.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
    CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=true ${KELMORA_CCACHE})
endif()
