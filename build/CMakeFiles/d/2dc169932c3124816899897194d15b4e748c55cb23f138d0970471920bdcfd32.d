resources/svgtopng_autogen/timestamp: \
  /usr/lib/x86_64-linux-gnu/cmake/Qt5/Qt5Config.cmake \
  /usr/lib/x86_64-linux-gnu/cmake/Qt5/Qt5ConfigVersion.cmake \
  /usr/lib/x86_64-linux-gnu/cmake/Qt5/Qt5ModuleLocation.cmake \
  /usr/lib/x86_64-linux-gnu/cmake/Qt5Svg/Qt5SvgConfig.cmake \
  /usr/lib/x86_64-linux-gnu/cmake/Qt5Svg/Qt5SvgConfigVersion.cmake \
  /usr/share/fonts/truetype/open-sans/OpenSans-Light.ttf \
  /usr/share/fonts/truetype/open-sans/OpenSans-Regular.ttf \
  /usr/share/fonts/truetype/open-sans/OpenSans-Semibold.ttf \
  resources/fonts.qrc \
  resources/fonts.qrc.in \
  resources/images.qrc \
  resources/images.qrc.in \
  /work/main/resources/CMakeLists.txt \
  /work/main/resources/resources.qrc \
  /work/main/resources/svgtopng.cpp \
  /usr/bin/cmake
