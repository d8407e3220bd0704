# kelmora_library(NAME [WIDGETS] [MOC] SOURCES ... LIBS ...): one room of the
# house. What a room may see is exactly what stands behind LIBS. WIDGETS tells
# which headers come precompiled; MOC is for rooms with a Q_OBJECT.
function(kelmora_library name)
  cmake_parse_arguments(ARG "WIDGETS;MOC" "" "SOURCES;LIBS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ${ARG_MOC})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LIBS} PRIVATE kelmora_warnings)
  if(ARG_WIDGETS)
    kelmora_use_precompiled(${name} widgets)
  else()
    kelmora_use_precompiled(${name} core)
  endif()
endfunction()
