# A compiler cache makes a second build of the same tree nearly free; the
# build works the same without one.
find_program(KELMORA_CCACHE ccache)
if(KELMORA_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  # Paths below the checkout do not count, so a second checkout finds what the
  # first one compiled. A precompiled header is part of what a source is known
  # by, once the cache is told so.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
    CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=true
    CCACHE_SLOPPINESS=pch_defines,time_macros ${KELMORA_CCACHE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess)
  elseif(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
  endif()
endif()
