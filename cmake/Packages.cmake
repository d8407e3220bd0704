# What cpack makes of an installed tree: two Debian packages, the client and the
# demo world. Included last, because CPack takes what is set by then.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kelmora)
set(CPACK_PACKAGE_VERSION "${KELMORA_VERSION}")
set(CPACK_PACKAGE_CONTACT "${KELMORA_CONTACT}")
set(CPACK_PACKAGE_VENDOR "Kelmora client developers")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_BINARY_DIR}/packaging/PackageDate.cmake)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/packaging/PackageDate.cmake @ONLY CONTENT
  "# The files of a package have one date, whenever it is made.\nif(NOT DEFINED ENV{SOURCE_DATE_EPOCH})\n  set(ENV{SOURCE_DATE_EPOCH} @KELMORA_DATE@)\nendif()\n")

set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/OneDate.cmake)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL client demo)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${KELMORA_PACKAGE_RELEASE})
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://kelmora.example/")
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_CLIENT_PACKAGE_NAME kelmora)
# Wayland's plugin and xdg-open, which opens links, are used where they are there.
set(CPACK_DEBIAN_CLIENT_PACKAGE_RECOMMENDS "qt6-translations-l10n, qt6-wayland, xdg-utils")
set(CPACK_DEBIAN_CLIENT_PACKAGE_SUGGESTS "kelmora-demo (= ${KELMORA_DEBIAN_VERSION})")
set(CPACK_DEBIAN_CLIENT_DESCRIPTION "desktop client for the text game Kelmora
Shows the coloured text of the game, sends what you type, and follows your hit,
spell and endurance points on three bars.

Aliases, triggers and macros play along: each is a list of commands of a small
scripting language with variables, conditions and pauses. They are edited in
dialogs and kept in plain text files of your own.

The package kelmora-demo has a small world to try it in.")
set(CPACK_DEBIAN_DEMO_PACKAGE_NAME kelmora-demo)
# Its entry in the menu opens the client, too.
set(CPACK_DEBIAN_DEMO_PACKAGE_RECOMMENDS kelmora)
set(CPACK_DEBIAN_DEMO_DESCRIPTION "small game world for the Kelmora client
Serves a small world with a tutorial, in which the client's colours, bars,
triggers and scripts can be tried without the game itself.

It takes connections from this computer alone and keeps nothing when it ends.")
include(CPack)
