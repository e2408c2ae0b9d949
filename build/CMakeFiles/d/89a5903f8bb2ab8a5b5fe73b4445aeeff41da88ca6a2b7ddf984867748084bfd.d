sources/morvane-navarch_autogen/timestamp: \
  /work/main/sources/CMakeLists.txt \
  /work/main/sources/main.cpp \
  /usr/bin/cmake
