# What ends a program where the library, the compiler or the heap finds a fault; see docs/checks.md, and
# tests/hardened for the proof of each.
target_compile_definitions(quillet-flags INTERFACE _GLIBCXX_ASSERTIONS)

# Copies into arrays whose size the compiler knows, and the end of a function's stack.
target_compile_definitions(quillet-flags INTERFACE _FORTIFY_SOURCE=2)
target_compile_options(quillet-flags INTERFACE -fstack-protector-strong)
target_link_options(quillet-flags INTERFACE -fstack-protector-strong)

# What the language leaves undefined. A trap needs no library, which there is none of for Windows. The
# type of an object could be asked with its type information alone, which is not built. Alignment is not
# asked for: Windows hands over structures that are aligned to four bytes, and this processor does not
# mind; the rules about outside data have it checked by ./dev fuzz.
target_compile_options(quillet-flags INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-fsanitize=undefined
  -fno-sanitize=vptr,alignment -fsanitize-undefined-trap-on-error>)

# One heap for the module and the programs around it. The names are asked for at the beginning of each
# linker's line: the run-time, which stands at its end, would find them at the system's library.
add_library(page-heap SHARED ${CMAKE_SOURCE_DIR}/tests/hardened/page_heap.cpp
            ${CMAKE_SOURCE_DIR}/tests/hardened/page_heap.def)
set_target_properties(page-heap PROPERTIES PREFIX "")
target_compile_features(page-heap PRIVATE cxx_std_20)
target_compile_options(page-heap PRIVATE -Wall -Wextra -Werror -fno-exceptions -fno-rtti)
target_link_options(page-heap PRIVATE -static)
target_link_libraries(quillet-flags INTERFACE page-heap)
target_link_options(quillet-flags INTERFACE
  -Wl,-u,_malloc -Wl,-u,_calloc -Wl,-u,_realloc -Wl,-u,_free)
