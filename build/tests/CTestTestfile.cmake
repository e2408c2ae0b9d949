# CMake generated Testfile for 
# Source directory: /work/main/tests
# Build directory: /work/main/build/tests
# 
# This file includes the relevant testing commands required for 
# testing this directory and lists subdirectories to be tested as well.
add_test([=[tst_directiontables]=] "/work/main/build/tests/tst_directiontables")
set_tests_properties([=[tst_directiontables]=] PROPERTIES  ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=/work/main/build/tests/home/tst_directiontables;XDG_CONFIG_HOME=/work/main/build/tests/home/tst_directiontables/config;XDG_DATA_HOME=/work/main/build/tests/home/tst_directiontables/data;XDG_CACHE_HOME=/work/main/build/tests/home/tst_directiontables/cache;XDG_RUNTIME_DIR=/work/main/build/tests/home/tst_directiontables/runtime" _BACKTRACE_TRIPLES "/work/main/tests/CMakeLists.txt;17;add_test;/work/main/tests/CMakeLists.txt;0;")
add_test([=[tst_mainwindow]=] "/work/main/build/tests/tst_mainwindow")
set_tests_properties([=[tst_mainwindow]=] PROPERTIES  ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=/work/main/build/tests/home/tst_mainwindow;XDG_CONFIG_HOME=/work/main/build/tests/home/tst_mainwindow/config;XDG_DATA_HOME=/work/main/build/tests/home/tst_mainwindow/data;XDG_CACHE_HOME=/work/main/build/tests/home/tst_mainwindow/cache;XDG_RUNTIME_DIR=/work/main/build/tests/home/tst_mainwindow/runtime" _BACKTRACE_TRIPLES "/work/main/tests/CMakeLists.txt;17;add_test;/work/main/tests/CMakeLists.txt;0;")
add_test([=[tst_navarch]=] "/work/main/build/tests/tst_navarch")
set_tests_properties([=[tst_navarch]=] PROPERTIES  ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=/work/main/build/tests/home/tst_navarch;XDG_CONFIG_HOME=/work/main/build/tests/home/tst_navarch/config;XDG_DATA_HOME=/work/main/build/tests/home/tst_navarch/data;XDG_CACHE_HOME=/work/main/build/tests/home/tst_navarch/cache;XDG_RUNTIME_DIR=/work/main/build/tests/home/tst_navarch/runtime" _BACKTRACE_TRIPLES "/work/main/tests/CMakeLists.txt;17;add_test;/work/main/tests/CMakeLists.txt;0;")
add_test([=[tst_settings]=] "/work/main/build/tests/tst_settings")
set_tests_properties([=[tst_settings]=] PROPERTIES  ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=/work/main/build/tests/home/tst_settings;XDG_CONFIG_HOME=/work/main/build/tests/home/tst_settings/config;XDG_DATA_HOME=/work/main/build/tests/home/tst_settings/data;XDG_CACHE_HOME=/work/main/build/tests/home/tst_settings/cache;XDG_RUNTIME_DIR=/work/main/build/tests/home/tst_settings/runtime" _BACKTRACE_TRIPLES "/work/main/tests/CMakeLists.txt;17;add_test;/work/main/tests/CMakeLists.txt;0;")
