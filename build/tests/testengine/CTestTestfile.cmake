# CMake generated Testfile for 
# Source directory: /work/wt/conversion/tests/testengine
# Build directory: /work/wt/conversion/build/tests/testengine
# 
# This file includes the relevant testing commands required for 
# testing this directory and lists subdirectories to be tested as well.
