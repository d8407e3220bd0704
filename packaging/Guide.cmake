# Installs what docs/ has for players as web pages, to which the help leads. On a
# system without awk there are none, and the help leads to the web.
find_program(KELMORA_AWK awk)
set(docs ${PROJECT_SOURCE_DIR}/docs)
file(GLOB pages RELATIVE ${docs} CONFIGURE_DEPENDS
  ${docs}/guide.md ${docs}/guide/*.md ${docs}/accessibility.md ${docs}/reference.md ${docs}/reference/*.md)
if(KELMORA_AWK AND NOT WIN32)
  set(converter ${CMAKE_CURRENT_SOURCE_DIR}/guide.awk)
  set(guide ${CMAKE_CURRENT_BINARY_DIR}/html)
  list(JOIN pages " " known)
  foreach(page IN LISTS pages)
    string(REGEX REPLACE "[.]md$" ".html" made ${guide}/${page})
    get_filename_component(folder ${made} DIRECTORY)
    file(MAKE_DIRECTORY ${folder})
    execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C ${KELMORA_AWK} -v "pages= ${known} " -v here=${page} -f ${converter} ${docs}/${page}
      OUTPUT_FILE ${made} COMMAND_ERROR_IS_FATAL ANY)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${docs}/${page} ${converter})
  endforeach()
  set(html ${CMAKE_INSTALL_DATAROOTDIR}/doc/kelmora/html)
  install(DIRECTORY ${guide}/ DESTINATION ${html} COMPONENT client)
  install(DIRECTORY ${docs}/images DESTINATION ${html} COMPONENT client FILES_MATCHING PATTERN *.png)
endif()
