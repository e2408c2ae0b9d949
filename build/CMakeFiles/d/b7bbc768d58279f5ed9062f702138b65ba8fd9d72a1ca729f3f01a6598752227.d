resources/navarch_resources_autogen/timestamp: \
  /usr/bin/cmake
