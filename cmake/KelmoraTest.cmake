# Qt Test's header looks at macros for a test's own folders and for the network,
# so that no two kinds of folder could share a precompiled header. No test looks
# for its data that way, and none compares the network's types.
set_target_properties(Qt6::Test PROPERTIES INTERFACE_COMPILE_DEFINITIONS QT_TESTLIB_LIB)
set_target_properties(Qt6::Network PROPERTIES INTERFACE_COMPILE_DEFINITIONS "")

# Tests are compiled once and run for seconds, most of them spent in the rooms'
# optimised code: quick to compile beats quick to run. Not so under the sanitizers,
# where those that compare much would run into their time limits.
add_library(kelmora_test_options INTERFACE)
target_link_libraries(kelmora_test_options INTERFACE kelmora_warnings)
# Newer releases' waiting macros narrow a number, which GCC tells where they are
# used. This comes behind the flags that ask for it.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND Qt6_VERSION VERSION_GREATER_EQUAL 6.5)
  add_library(kelmora_waiting_macros INTERFACE)
  target_compile_options(kelmora_waiting_macros INTERFACE -Wno-conversion)
  target_link_libraries(kelmora_test_options INTERFACE kelmora_waiting_macros)
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang" AND NOT KELMORA_SANITIZE)
  target_compile_options(kelmora_test_options INTERFACE -O0 -g1)
endif()

kelmora_precompiled_kind(core_tests LIBS Qt6::Core Qt6::Test kelmora_test_options)
kelmora_precompiled_kind(values_tests LIBS Qt6::Gui Qt6::Test kelmora_test_options)
kelmora_precompiled_kind(widgets_tests LIBS Qt6::Widgets Qt6::Test kelmora_test_options)

# The main of every test program, and what test classes inherit.
add_library(kelmora_test_runner STATIC ${PROJECT_SOURCE_DIR}/tests/support/TestRunner.cpp
  ${PROJECT_SOURCE_DIR}/tests/support/OwnFolderTest.h)
set_target_properties(kelmora_test_runner PROPERTIES AUTOMOC ON)
target_include_directories(kelmora_test_runner PUBLIC ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(kelmora_test_runner PUBLIC Qt6::Test PRIVATE kelmora_test_options)
kelmora_use_precompiled(kelmora_test_runner core_tests)

# What tests of widgets share beyond headers.
add_library(kelmora_test_dialogs STATIC EXCLUDE_FROM_ALL
  ${PROJECT_SOURCE_DIR}/tests/support/DialogAnswers.cpp)
target_include_directories(kelmora_test_dialogs PUBLIC ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(kelmora_test_dialogs PUBLIC Qt6::Widgets Qt6::Test kelmora_test_options)
kelmora_use_precompiled(kelmora_test_dialogs widgets_tests)

# kelmora_tests(ROOM KIND LIBS ... TESTS ... [SLOW ...] [SOURCES ...]):
# builds tst_*.cpp of the current folder into one program, test_ROOM, and
# registers each as a test of its own, which runs in a process of its own.
# Core tests name core libraries only, so a widget in a rule's code is a link
# error. KIND is core, values (with Qt Gui's, such as fonts) or widgets. SLOW
# tests may take minutes where sanitizers look on.
function(kelmora_tests room kind)
  cmake_parse_arguments(ARG "" "" "LIBS;TESTS;SLOW;SOURCES;THROUGH" ${ARGN})
  set(program test_${room})
  set(files "")
  foreach(test IN LISTS ARG_TESTS)
    list(APPEND files ${test}.cpp)
  endforeach()
  add_executable(${program} ${files} ${ARG_SOURCES})
  set_target_properties(${program} PROPERTIES AUTOMOC ON)
  target_include_directories(${program} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${program} PRIVATE ${ARG_LIBS} Qt6::Test kelmora_test_runner kelmora_test_options)
  if(kind STREQUAL "widgets")
    target_link_libraries(${program} PRIVATE kelmora_test_dialogs)
  endif()
  kelmora_use_precompiled(${program} ${kind}_tests)
  get_filename_component(folder ${CMAKE_CURRENT_SOURCE_DIR} NAME)
  foreach(test IN LISTS ARG_TESTS)
    add_test(NAME ${test} COMMAND ${ARG_THROUGH} $<TARGET_FILE:${program}> ${test})
    set(timeout 120)
    if(test IN_LIST ARG_SLOW)
      set(timeout 600)
    endif()
    set_tests_properties(${test} PROPERTIES TIMEOUT ${timeout} LABELS ${folder}
      ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  endforeach()
endfunction()
