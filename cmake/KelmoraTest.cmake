# kelmora_test(NAME LIBS ...): builds NAME.cpp of the current folder as a Qt
# Test program and registers it. Core tests name core libraries only, so a
# widget in a rule's code is a link error.
function(kelmora_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "LIBS;SOURCES" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${name}.cpp ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} Qt6::Test kelmora_warnings)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT}
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
