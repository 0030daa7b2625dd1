# The Debian package, made by cpack -G DEB in a build folder configured with PELORA_DEBIAN.
if(PELORA_DEBIAN)
  set(debian ${CMAKE_CURRENT_BINARY_DIR}/debian)
  string(TIMESTAMP PELORA_YEAR "%Y" UTC)
  configure_file(copyright.in ${debian}/copyright @ONLY)
  pelora_debian_changelog(changelog)
  file(CONFIGURE OUTPUT ${debian}/changelog CONTENT "${changelog}" @ONLY)
  pelora_compressed(${debian}/changelog ${debian}/changelog.gz)
  pelora_compressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${debian}/NEWS.gz)
  add_custom_target(debian_documents ALL DEPENDS ${debian}/changelog.gz ${debian}/NEWS.gz)
  install(FILES ${debian}/copyright ${debian}/changelog.gz ${debian}/NEWS.gz
          DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME pelora-utility)
set(CPACK_PACKAGE_VENDOR ${PELORA_PUBLISHER})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_VERBATIM_VARIABLES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${PELORA_PUBLISHER} <${PELORA_MAINTAINER_MAIL}>")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${PELORA_HOMEPAGE})
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qt6-wayland)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "configure a Pelora keyboard-and-mouse switch")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"The Norvik Pelora switch lends one keyboard and one mouse to up to four
computers whose displays stand side by side. This utility reads the switch's
configuration over RS232 or over the network, shows it, and changes it:
control of keyboard, mouse and USB, the layout of the displays, the speed of
the mouse, and the settings of the network module.
.
A simulated switch is included, for those who have none at hand.")
include(CPack)
