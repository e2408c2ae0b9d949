# CMake generated Testfile for 
# Source directory: /work/wt/conversion/tests
# Build directory: /work/wt/conversion/build/tests
# 
# This file includes the relevant testing commands required for 
# testing this directory and lists subdirectories to be tested as well.
add_test([=[tst_conversion]=] "/work/wt/conversion/build/tests/tst_conversion")
set_tests_properties([=[tst_conversion]=] PROPERTIES  ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=/work/wt/conversion/build/tests/home/tst_conversion;XDG_CONFIG_HOME=/work/wt/conversion/build/tests/home/tst_conversion/config;XDG_DATA_HOME=/work/wt/conversion/build/tests/home/tst_conversion/data;XDG_CACHE_HOME=/work/wt/conversion/build/tests/home/tst_conversion/cache;QT_LOGGING_RULES=*.debug=false" _BACKTRACE_TRIPLES "/work/wt/conversion/tests/CMakeLists.txt;23;add_test;/work/wt/conversion/tests/CMakeLists.txt;0;")
add_test([=[tst_conversionoutput]=] "/work/wt/conversion/build/tests/tst_conversionoutput")
set_tests_properties([=[tst_conversionoutput]=] PROPERTIES  ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=/work/wt/conversion/build/tests/home/tst_conversionoutput;XDG_CONFIG_HOME=/work/wt/conversion/build/tests/home/tst_conversionoutput/config;XDG_DATA_HOME=/work/wt/conversion/build/tests/home/tst_conversionoutput/data;XDG_CACHE_HOME=/work/wt/conversion/build/tests/home/tst_conversionoutput/cache;QT_LOGGING_RULES=*.debug=false" _BACKTRACE_TRIPLES "/work/wt/conversion/tests/CMakeLists.txt;23;add_test;/work/wt/conversion/tests/CMakeLists.txt;0;")
subdirs("testengine")
