# A Debian package of all that is installed: cpack -G DEB --config BUILD/CPackConfig.cmake
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tvk-map)
set(CPACK_PACKAGE_CONTACT "tvk-map maintainers <maintainers@tvk-map.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGE_DESCRIPTION
    "Mapping code translates between OpenConfig and the models of a network device. This package has the library that
such code stands on, the default platform layer, the headers of both, the desk tool tvk-map and example mappings.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
include(CPack)
