# What every target is compiled and linked with, in one interface library.
add_library(quillet-flags INTERFACE)

target_compile_features(quillet-flags INTERFACE cxx_std_20)
target_compile_definitions(quillet-flags INTERFACE
  UNICODE _UNICODE STRICT NOMINMAX WIN32_LEAN_AND_MEAN
  WINVER=0x0501 _WIN32_WINNT=0x0501 _WIN32_IE=0x0600 NTDDI_VERSION=0x05010200)
# From GCC 13 on <memory> needs a declaration of condition variables, which its headers make for Windows
# Vista and later only. Nothing of ours waits on one; see also common/old_windows.cpp.
if(CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 13)
  target_compile_definitions(quillet-flags INTERFACE __GTHREAD_HAS_COND=1)
endif()
target_include_directories(quillet-flags INTERFACE ${CMAKE_SOURCE_DIR} ${CMAKE_BINARY_DIR})

configure_file(common/version.h.in common/version.h @ONLY)

# The one place that knows the compiler: everything else is standard C++ and the Windows interfaces.
# Functions are not cloned for their callers (ipa-sra): each file would have clones of its own of what
# all of them share, a fiftieth of the module in all.
target_compile_options(quillet-flags INTERFACE
  -Wall -Wextra -Wpedantic -Werror
  -ffunction-sections -fdata-sections -fno-ident -fno-ipa-sra)
# The same sources give the same bytes, wherever and whenever they are built. Lines and functions for a
# debugger are made for what ships too; what is linked without KEEPS_SYMBOLS drops them.
target_compile_options(quillet-flags INTERFACE
  -ffile-prefix-map=${CMAKE_SOURCE_DIR}/= $<$<CONFIG:Release>:-g1>)
# Nothing in the module asks an object for its type, and the tables for that would be a fiftieth of
# it. A target that does ask sets the property USES_RTTI.
target_compile_options(quillet-flags INTERFACE
  $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<NOT:$<BOOL:$<TARGET_PROPERTY:USES_RTTI>>>>:-fno-rtti>)
target_link_options(quillet-flags INTERFACE
  -static -Wl,--gc-sections -Wl,--nxcompat -Wl,--dynamicbase -Wl,--no-insert-timestamp
  $<$<AND:$<CONFIG:Release>,$<NOT:$<BOOL:$<TARGET_PROPERTY:KEEPS_SYMBOLS>>>>:-s>)

# The presets that look for faults, see docs/checks.md, have more of their own.
if(QUILLET_CHECKS)
  include(cmake/${QUILLET_CHECKS}.cmake)
endif()
