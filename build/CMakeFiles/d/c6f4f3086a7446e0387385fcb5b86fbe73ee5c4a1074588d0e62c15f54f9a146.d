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
  /work/wt/conversion/resources/CMakeLists.txt \
  /work/wt/conversion/resources/resources.qrc \
  /work/wt/conversion/resources/svgtopng.cpp \
  /usr/bin/cmake
