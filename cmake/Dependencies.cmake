# Debian's libraries by their own packages, the unpacked wheels by path (see unpack_wheels.py). All are SYSTEM: their
# headers are not ours to warn about.
set(VARNIC_DEPS_DIR "${CMAKE_SOURCE_DIR}/.deps" CACHE PATH "Where setup unpacked the pinned wheels")

find_package(PkgConfig REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)
find_package(Threads REQUIRED)
find_package(ICU 72 REQUIRED COMPONENTS uc i18n)
find_package(fmt 9 REQUIRED)
find_package(nlohmann_json 3.11 REQUIRED)
find_package(simdjson 3 REQUIRED)
pkg_check_modules(FFMPEG REQUIRED IMPORTED_TARGET libavformat libavcodec libswresample libavutil)
pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET glib-2.0)
pkg_check_modules(SODIUM REQUIRED IMPORTED_TARGET libsodium)
pkg_check_modules(CURL REQUIRED IMPORTED_TARGET libcurl)
pkg_check_modules(SECRET REQUIRED IMPORTED_TARGET libsecret-1)
pkg_check_modules(PANGO REQUIRED IMPORTED_TARGET pangocairo cairo-pdf)
pkg_check_modules(ARCHIVE REQUIRED IMPORTED_TARGET libarchive)
pkg_check_modules(PUGIXML REQUIRED IMPORTED_TARGET pugixml)
pkg_check_modules(PIPEWIRE REQUIRED IMPORTED_TARGET libpipewire-0.3)
pkg_check_modules(SYSTEMD REQUIRED IMPORTED_TARGET libsystemd)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb xcb-keysyms)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus Gui Qml Quick QuickTest Svg Widgets)
find_package(QCoro6 REQUIRED COMPONENTS Core)

add_library(SherpaOnnx SHARED IMPORTED)
set_target_properties(SherpaOnnx PROPERTIES
    IMPORTED_LOCATION "${VARNIC_DEPS_DIR}/sherpa-onnx/lib/libsherpa-onnx-c-api.so"
    INTERFACE_INCLUDE_DIRECTORIES "${VARNIC_DEPS_DIR}/sherpa-onnx/include")
if(NOT EXISTS "${VARNIC_DEPS_DIR}/sherpa-onnx/lib/libsherpa-onnx-c-api.so")
    message(FATAL_ERROR "The speech engine is not in ${VARNIC_DEPS_DIR}: run ./dev setup")
endif()
