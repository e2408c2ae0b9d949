# CMake generated Testfile for 
# Source directory: /work/wt/conversion/resources
# Build directory: /work/wt/conversion/build/resources
# 
# This file includes the relevant testing commands required for 
# testing this directory and lists subdirectories to be tested as well.
