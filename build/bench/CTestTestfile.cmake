# CMake generated Testfile for 
# Source directory: /work/wt/conversion/bench
# Build directory: /work/wt/conversion/build/bench
# 
# This file includes the relevant testing commands required for 
# testing this directory and lists subdirectories to be tested as well.
