# Flags live on these two targets, which our own targets link privately; nothing is global.

add_library(svgtool_warnings INTERFACE)
if(MSVC)
  target_compile_options(svgtool_warnings INTERFACE /W4 $<$<BOOL:${SVGTOOL_WERROR}>:/WX>)
else()
  target_compile_options(svgtool_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wformat=2 -Wimplicit-fallthrough
    $<$<BOOL:${SVGTOOL_WERROR}>:-Werror>)
endif()

# Output depends on every float rounding, so no fused multiply-add and no wider intermediates.
add_library(svgtool_exactness INTERFACE)
if(NOT MSVC)
  target_compile_options(svgtool_exactness INTERFACE -ffp-contract=off -fno-fast-math)
endif()
