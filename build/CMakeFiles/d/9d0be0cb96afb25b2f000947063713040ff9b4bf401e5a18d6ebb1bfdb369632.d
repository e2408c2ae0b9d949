sources/morvane-navarch_autogen/timestamp: \
  /work/wt/conversion/sources/CMakeLists.txt \
  /work/wt/conversion/sources/main.cpp \
  /usr/bin/cmake
