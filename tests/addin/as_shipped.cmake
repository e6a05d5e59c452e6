# What is true of the module as it ships and of no other: the presets that look for faults leave it out.
set_tests_properties(
  # It takes memory from the page heap, or writes down what was run.
  "The module imports only functions of the written list"
  "The written list of imports names only functions that the module imports"
  # Checks and counters need room, and what they tell needs symbols.
  "The module stays below 512 KB and is stripped"
  # Where its counts are to be written stands in it.
  "The module tells neither when nor where it was built"
  PROPERTIES LABELS as-shipped)
