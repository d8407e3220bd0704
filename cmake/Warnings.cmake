# Our own targets link this; third-party headers come in as system includes.
# Each flag is asked for and left out where the compiler does not know it.
include(CheckCXXCompilerFlag)

add_library(kelmora_warnings INTERFACE)
if(MSVC)
  set(wanted_flags /W4 /permissive-)
  set(error_flag /WX)
else()
  set(wanted_flags -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor)
  set(error_flag -Werror)
endif()
foreach(flag IN LISTS wanted_flags)
  string(MAKE_C_IDENTIFIER "KELMORA_HAS${flag}" known)
  check_cxx_compiler_flag(${flag} ${known})
  if(${known})
    target_compile_options(kelmora_warnings INTERFACE ${flag})
  endif()
endforeach()
if(KELMORA_WERROR)
  target_compile_options(kelmora_warnings INTERFACE ${error_flag})
endif()

# Narrow string conversions decide encodings here, so each one is spelled out.
target_compile_definitions(kelmora_warnings INTERFACE
  QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH QT_NO_KEYWORDS
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)
