# Our own targets link this; third-party headers come in as system includes.
add_library(kelmora_warnings INTERFACE)
target_compile_options(kelmora_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
  $<$<BOOL:${KELMORA_WERROR}>:-Werror>)
# Narrow string conversions decide encodings here, so each one is spelled out.
target_compile_definitions(kelmora_warnings INTERFACE
  QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH QT_NO_KEYWORDS
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(KELMORA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# The fuzz targets alone link the fuzzer's own main.
if(KELMORA_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# kelmora_library(NAME SOURCES ... LIBS ...): one room of the house. What a
# room may see is exactly what stands behind LIBS.
function(kelmora_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LIBS} PRIVATE kelmora_warnings)
endfunction()
