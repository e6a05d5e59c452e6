# Each object counts in a file of its own, which a program writes at its end and the module when it is
# unloaded; see docs/checks.md.
target_compile_options(quillet-flags INTERFACE $<$<COMPILE_LANGUAGE:CXX>:--coverage>)
target_link_options(quillet-flags INTERFACE --coverage)
