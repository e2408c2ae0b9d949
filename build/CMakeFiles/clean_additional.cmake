# Additional clean files
cmake_minimum_required(VERSION 3.16)

if("${CONFIG}" STREQUAL "" OR "${CONFIG}" STREQUAL "RelWithDebInfo")
  file(REMOVE_RECURSE
  "resources/CMakeFiles/navarch_resources_autogen.dir/AutogenUsed.txt"
  "resources/CMakeFiles/navarch_resources_autogen.dir/ParseCache.txt"
  "resources/CMakeFiles/svgtopng_autogen.dir/AutogenUsed.txt"
  "resources/CMakeFiles/svgtopng_autogen.dir/ParseCache.txt"
  "resources/navarch_resources_autogen"
  "resources/svgtopng_autogen"
  "sources/CMakeFiles/morvane-navarch_autogen.dir/AutogenUsed.txt"
  "sources/CMakeFiles/morvane-navarch_autogen.dir/ParseCache.txt"
  "sources/CMakeFiles/navarch_autogen.dir/AutogenUsed.txt"
  "sources/CMakeFiles/navarch_autogen.dir/ParseCache.txt"
  "sources/morvane-navarch_autogen"
  "sources/navarch_autogen"
  "tests/CMakeFiles/tst_directiontables_autogen.dir/AutogenUsed.txt"
  "tests/CMakeFiles/tst_directiontables_autogen.dir/ParseCache.txt"
  "tests/CMakeFiles/tst_mainwindow_autogen.dir/AutogenUsed.txt"
  "tests/CMakeFiles/tst_mainwindow_autogen.dir/ParseCache.txt"
  "tests/CMakeFiles/tst_navarch_autogen.dir/AutogenUsed.txt"
  "tests/CMakeFiles/tst_navarch_autogen.dir/ParseCache.txt"
  "tests/CMakeFiles/tst_settings_autogen.dir/AutogenUsed.txt"
  "tests/CMakeFiles/tst_settings_autogen.dir/ParseCache.txt"
  "tests/tst_directiontables_autogen"
  "tests/tst_mainwindow_autogen"
  "tests/tst_navarch_autogen"
  "tests/tst_settings_autogen"
  )
endif()
