# The Debian package, made by `cpack -G DEB` in a release build (scripts/package does the whole job).
# A native package (Kro is its own upstream: no Debian revision), so its changelog is
# share/doc/kro/changelog.gz. Dependencies come from dpkg-shlibdeps on the binary; the binary ships stripped,
# its debug symbols in the separate kro-dbgsym package (CPack strips it there itself; stripping at install
# would leave no symbols to split off).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kro)
set(CPACK_PACKAGE_VENDOR "The Kro developers")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "color picker in the system tray, with formats and palettes")
# CPack puts the summary first and indents each line of this; an empty line becomes " .".
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Kro lives in the system tray. A hot key opens a magnifying loupe at the
pointer; a click turns the color under it into text, in a format you choose
or write yourself, and puts it on the clipboard. Picked colors go into a
history and into palettes, which are read from and written to the palette
and gradient files of GIMP, Inkscape, Krita, Scribus, LibreOffice, Adobe
applications and many other programs.

A command line formats, names and scans colors and converts palette files;
kro:// links add colors and palettes to a running Kro. Kro needs an X11
session, or XWayland under Wayland.")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Kro developers <kro@kroapp.invalid>"
  CACHE STRING "The Maintainer field of the Debian package")
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Qt's platform plugins are loaded, not linked, so dpkg-shlibdeps cannot see them: the X11 one is needed in
# every session, the Wayland one and the desktop portal only in a Wayland session. xdg-open hands kro:// links
# to the agent; a tray host and a secret service are the desktop's own.
# libcurl (sync) and libsecret (passwords in the secret service, else a private file) are opened when first
# needed, not linked, so that a command does not load them: they are named here too.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, libcurl4")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, qt6-wayland, xdg-desktop-portal, libsecret-1-0")
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)
include(CPack)
