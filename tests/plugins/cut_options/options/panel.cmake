# The panel's own groups of operations, with real widgets.
labelcut_test_library(labelcut_panel_fixtures
  SOURCES panel_fixtures.cpp panel_fixtures.h
  LINK labelcut_panel_test_support)

foreach(group initialize rules actions following layout refresh summary cut_plan)
  labelcut_test(option_panel_${group}_test
    SOURCES ${group}_test.cpp
    LINK labelcut_panel_fixtures)
endforeach()
