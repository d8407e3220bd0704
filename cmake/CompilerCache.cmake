# A compiler cache makes a second build of the same tree nearly free; the
# build works the same without one.
find_program(KELMORA_CCACHE ccache)
if(KELMORA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${KELMORA_CCACHE})
endif()
