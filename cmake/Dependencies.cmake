# Every library that is not ours. Third-party headers may be included in src/kits and in host only.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
pkg_check_modules(SIGC REQUIRED IMPORTED_TARGET sigc++-3.0)
pkg_check_modules(AVCODEC REQUIRED IMPORTED_TARGET libavformat libavcodec libavutil)
pkg_check_modules(SOXR REQUIRED IMPORTED_TARGET soxr)
pkg_check_modules(RUBBERBAND REQUIRED IMPORTED_TARGET rubberband)
pkg_check_modules(RTAUDIO REQUIRED IMPORTED_TARGET rtaudio)
find_package(fmt REQUIRED)
