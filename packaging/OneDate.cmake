# Run by cpack before it packs: gives everything in a package its one date.
file(GLOB_RECURSE files LIST_DIRECTORIES true ${CPACK_TEMPORARY_DIRECTORY}/*)
foreach(file IN LISTS files)
  execute_process(COMMAND touch -h -d @$ENV{SOURCE_DATE_EPOCH} ${file} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
