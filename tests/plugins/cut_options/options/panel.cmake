# The panel's own groups of operations, with real widgets.
add_library(labelcut_panel_fixtures STATIC panel_fixtures.cpp panel_fixtures.h)
target_link_libraries(labelcut_panel_fixtures PUBLIC labelcut_panel_test_support)
target_compile_definitions(labelcut_panel_fixtures PUBLIC
  LABELCUT_BUNDLE_DIR="${CMAKE_BINARY_DIR}/bundle")

foreach(group initialize rules actions following layout refresh summary)
  labelcut_test(option_panel_${group}_test
    SOURCES ${group}_test.cpp
    LINK labelcut_panel_fixtures)
endforeach()
