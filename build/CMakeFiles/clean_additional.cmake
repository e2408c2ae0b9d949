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
  "tests/CMakeFiles/tst_conversion_autogen.dir/AutogenUsed.txt"
  "tests/CMakeFiles/tst_conversion_autogen.dir/ParseCache.txt"
  "tests/CMakeFiles/tst_conversionoutput_autogen.dir/AutogenUsed.txt"
  "tests/CMakeFiles/tst_conversionoutput_autogen.dir/ParseCache.txt"
  "tests/testengine/CMakeFiles/testengine_autogen.dir/AutogenUsed.txt"
  "tests/testengine/CMakeFiles/testengine_autogen.dir/ParseCache.txt"
  "tests/testengine/testengine_autogen"
  "tests/tst_conversion_autogen"
  "tests/tst_conversionoutput_autogen"
  )
endif()
