# cpack -G DEB: a package as Debian has them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tockwise)
set(CPACK_PACKAGE_VENDOR "The authors of Tockwise")
set(CPACK_PACKAGE_CONTACT "Tockwise developers <tockwise@quillstone.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "reminders in the system tray")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
# Installed with DESTDIR, so that what is told its prefix is told that of the package.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${CPACK_PACKAGE_CONTACT}")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
file(READ ${CMAKE_CURRENT_LIST_DIR}/description description)
string(STRIP "${description}" CPACK_PACKAGE_DESCRIPTION)

# The libraries are found by dpkg-shlibdeps. What it cannot see: the zones' rules, which are read
# from their files, and what is loaded or asked for when it is there. (GIO comes with GLib.)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libcanberra0, tzdata")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "default-dbus-session-bus | dbus-session-bus, \
hicolor-icon-theme, libcanberra-pulse, libqt6svg6, libsecret-1-0, notification-daemon, qt6-wayland")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "cups, gnome-keyring | kwalletmanager, qt6-image-formats-plugins")

# What only a Debian package has is put in place when everything else is.
set(TOCKWISE_SOURCE_DIR ${CMAKE_SOURCE_DIR})
configure_file(${CMAKE_CURRENT_LIST_DIR}/stage.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/stage.cmake @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_BINARY_DIR}/stage.cmake)
include(CPack)
