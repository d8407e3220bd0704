# Most of the time a source takes to compile is the toolkit's headers, so those
# that a kind of source shares are compiled once: for rules, for the window, and
# for the tests of each. A source still includes all that it names itself; a
# build with KELMORA_PRECOMPILE off sees to that.
option(KELMORA_PRECOMPILE "Share precompiled headers" ON)

# kelmora_precompiled_kind(KIND LIBS ...): what cmake/precompiled/KIND.h includes.
# Built only where somebody uses it.
function(kelmora_precompiled_kind kind)
  cmake_parse_arguments(ARG "" "" "LIBS" ${ARGN})
  if(NOT KELMORA_PRECOMPILE)
    return()
  endif()
  set(name kelmora_precompiled_${kind})
  add_library(${name} OBJECT EXCLUDE_FROM_ALL ${PROJECT_SOURCE_DIR}/cmake/empty.cpp)
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} kelmora_warnings)
  target_precompile_headers(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/precompiled/${kind}.h)
endfunction()

# kelmora_use_precompiled(TARGET KIND): a target with the options of that kind.
function(kelmora_use_precompiled target kind)
  if(TARGET kelmora_precompiled_${kind})
    target_precompile_headers(${target} REUSE_FROM kelmora_precompiled_${kind})
  endif()
endfunction()

kelmora_precompiled_kind(core LIBS Qt6::Core)
kelmora_precompiled_kind(widgets LIBS Qt6::Widgets)
