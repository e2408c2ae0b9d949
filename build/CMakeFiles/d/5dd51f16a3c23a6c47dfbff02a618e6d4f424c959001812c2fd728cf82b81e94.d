tests/testengine/testengine_autogen/timestamp: \
  /work/wt/conversion/tests/testengine/CMakeLists.txt \
  /work/wt/conversion/tests/testengine/main.cpp \
  /usr/bin/cmake
