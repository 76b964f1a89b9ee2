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
# Colour text recognition matches with RE2, whose time is linear in the text whatever the text.
pkg_check_modules(RE2 REQUIRED IMPORTED_TARGET re2)
# stb's image reader and writer are header libraries (libstb-dev); the exchange layer compiles them in.
# JPEG files are read with libjpeg-turbo (libjpeg-dev), which is safe on damaged files where stb is not.
find_path(STB_INCLUDE_DIR stb/stb_image.h REQUIRED)
find_package(JPEG REQUIRED)
find_package(Threads REQUIRED)
# The secret service is optional: without libsecret, passwords go to the private file.
pkg_check_modules(SECRET IMPORTED_TARGET libsecret-1)

if(KRO_GUI AND NOT KRO_FUZZ)
  # DBus: GIMP and Inkscape on the session bus, and desktop notifications where no tray shows the icon
  # (part of Qt's base, like Network).
  find_package(Qt6 REQUIRED COMPONENTS Core Gui Widgets Network DBus)
  pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb xcb-xtest xcb-xfixes xcb-xinput xcb-composite xcb-shm xcb-image xcb-keysyms xcb-ewmh xcb-icccm)
  pkg_check_modules(CANBERRA REQUIRED IMPORTED_TARGET libcanberra)
endif()

if(KRO_TESTS)
  find_package(GTest REQUIRED)
endif()
if(KRO_BENCH AND NOT KRO_FUZZ)
  find_package(benchmark REQUIRED)
endif()

# Wayland: libwayland-client for the compositor's screen copy, the protocols' XML for wayland-scanner.
if(KRO_GUI AND NOT KRO_FUZZ)
  find_package(Qt6 REQUIRED COMPONENTS DBus)
  pkg_check_modules(WAYLAND_CLIENT REQUIRED IMPORTED_TARGET wayland-client)
  pkg_get_variable(WAYLAND_PROTOCOLS_DIR wayland-protocols pkgdatadir)
  find_program(WAYLAND_SCANNER wayland-scanner REQUIRED)
endif()

# kro_wayland_protocol(TARGET XML): the client header and glue code of one protocol, compiled into TARGET.
function(kro_wayland_protocol target xml)
  get_filename_component(name ${xml} NAME_WE)
  set(header ${CMAKE_CURRENT_BINARY_DIR}/${name}-client-protocol.h)
  set(code ${CMAKE_CURRENT_BINARY_DIR}/${name}-protocol.c)
  add_custom_command(OUTPUT ${header} COMMAND ${WAYLAND_SCANNER} client-header ${xml} ${header} DEPENDS ${xml})
  add_custom_command(OUTPUT ${code} COMMAND ${WAYLAND_SCANNER} private-code ${xml} ${code} DEPENDS ${xml})
  target_sources(${target} PRIVATE ${header} ${code})
  target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
endfunction()
