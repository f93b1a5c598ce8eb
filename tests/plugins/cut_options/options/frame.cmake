# The panel's model, what it writes to the host, and what it does before printing.
labelcut_test(option_model_test
  SOURCES option_subsets.h model_test.cpp
  LINK labelcut_panel_test_support)
labelcut_test(option_save_test
  SOURCES option_subsets.h save_test.cpp
  LINK labelcut_panel_test_support)
labelcut_test(option_print_validation_test
  SOURCES option_subsets.h print_validation_test.cpp
  LINK labelcut_panel_test_support)
