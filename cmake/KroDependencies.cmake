# Every third-party library Kro links, found once here; each folder links the imported targets it needs.
find_package(PkgConfig REQUIRED)
find_package(nlohmann_json 3 REQUIRED)
find_package(OpenSSL REQUIRED COMPONENTS Crypto)
find_package(ZLIB REQUIRED)
find_package(EXPAT REQUIRED)
find_package(CURL REQUIRED)
find_package(ICU REQUIRED COMPONENTS uc i18n)
pkg_check_modules(LCMS2 REQUIRED IMPORTED_TARGET lcms2)
pkg_check_modules(CAIRO REQUIRED IMPORTED_TARGET cairo)
# stb's image reader and writer are header libraries (libstb-dev); the exchange layer compiles them in.
# JPEG files are read with libjpeg-turbo (libjpeg-dev), which is safe on damaged files where stb is not.
find_path(STB_INCLUDE_DIR stb/stb_image.h REQUIRED)
find_package(JPEG REQUIRED)
find_package(Threads REQUIRED)
# The secret service is optional: without libsecret, passwords go to the private file.
pkg_check_modules(SECRET IMPORTED_TARGET libsecret-1)

if(KRO_GUI AND NOT KRO_FUZZ)
  find_package(Qt6 REQUIRED COMPONENTS Core Gui Widgets Network)
  pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb xcb-xtest xcb-xfixes xcb-xinput xcb-composite xcb-shm xcb-image xcb-keysyms xcb-ewmh xcb-icccm)
  pkg_check_modules(CANBERRA REQUIRED IMPORTED_TARGET libcanberra)
endif()

if(KRO_TESTS)
  find_package(GTest REQUIRED)
endif()
if(KRO_BENCH AND NOT KRO_FUZZ)
  find_package(benchmark REQUIRED)
endif()
