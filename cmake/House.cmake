# Compiler rules that hold in every room. `house` is for the program, `house_tests` adds what tests may do.
add_library(house INTERFACE)
target_compile_options(house INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wunused -Wold-style-cast
  -Wnull-dereference)
if(MERIVANE_STRICT)
  target_compile_options(house INTERFACE -Werror)
endif()
# GCC 12 reports false positives of these kinds inside its own and Qt's inlined containers.
target_compile_options(house INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-null-dereference -Wno-restrict>)
target_compile_options(house INTERFACE
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-maybe-uninitialized>)
target_compile_definitions(house INTERFACE
  QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_FOREACH
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(MERIVANE_SANITIZE)
  target_compile_options(house INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
    -fno-omit-frame-pointer -g1)
  # Instrumented code hides from GCC 12 what has been set; the plain builds keep this warning.
  target_compile_options(house INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(house INTERFACE -fsanitize=address,undefined)
endif()
if(MERIVANE_FUZZ)
  target_compile_options(house INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined -g1)
  target_link_options(house INTERFACE -fsanitize=address,undefined)
endif()

add_library(house_tests INTERFACE)
target_link_libraries(house_tests INTERFACE house)
