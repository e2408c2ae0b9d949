# CMake generated Testfile for 
# Source directory: /work/wt/conversion
# Build directory: /work/wt/conversion/build
# 
# This file includes the relevant testing commands required for 
# testing this directory and lists subdirectories to be tested as well.
subdirs("resources")
subdirs("sources")
subdirs("engine")
subdirs("tests")
subdirs("bench")
