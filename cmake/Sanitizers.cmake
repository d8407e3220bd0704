# GCC's and clang's way to say it; other compilers have no such builds here.
set(sanitize -fsanitize=address,undefined)
if(KELMORA_SANITIZE OR KELMORA_FUZZ)
  add_compile_options(${sanitize} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(${sanitize})
endif()
# The fuzz targets alone link the fuzzer's own main.
if(KELMORA_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
