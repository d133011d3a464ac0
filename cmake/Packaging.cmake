# The Debian package (cpack -G DEB); scripts/package builds it from a clean build folder.
set(CPACK_PACKAGE_NAME lumabroom)
set(CPACK_PACKAGE_VENDOR "The Lumabroom developers")
set(CPACK_PACKAGE_CONTACT "${LUMABROOM_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "find and remove what development tools leave on disk")
set(CPACK_PACKAGE_DESCRIPTION
    "Lumabroom finds, measures and removes build products, package-manager caches,\n"
    "simulator data, downloaded browsers, container disks, local model weights,\n"
    "coding-agent sessions and leftover git worktrees. It removes only what you\n"
    "choose. lumabroom-scan runs the same scan without a window.")
string(JOIN "" CPACK_PACKAGE_DESCRIPTION ${CPACK_PACKAGE_DESCRIPTION})
set(CPACK_PACKAGE_HOMEPAGE_URL https://lumabroom.app/)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# Dependencies come from the binaries' own libraries, never from a hand-written list.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    set(CPACK_GENERATOR DEB)
endif()
include(CPack)
