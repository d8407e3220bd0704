# What is shipped is built so that the same sources give the same bytes in any
# folder, and with the guards that distributions ask for. Everyday builds stay as
# they are.
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang" AND UNIX AND NOT APPLE AND NOT KELMORA_SANITIZE AND NOT KELMORA_FUZZ)
  foreach(flag IN ITEMS -ffile-prefix-map=${PROJECT_BINARY_DIR}=build -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.
                        -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    add_compile_options($<$<CONFIG:Release>:${flag}>)
  endforeach()
  foreach(flag IN ITEMS -Wl,-z,relro -Wl,-z,now)
    add_link_options($<$<CONFIG:Release>:${flag}>)
  endforeach()
endif()
