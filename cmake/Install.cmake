# Adds to "cmake --install", beside libraries, headers and programs, what other projects find them by.
include(CMakePackageConfigHelpers)

set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/tvk_map)
set(module_folder ${CMAKE_INSTALL_LIBDIR}/${TVK_MODULE_SUBDIR})
install(EXPORT tvk_map NAMESPACE tvk_map:: FILE tvk_map-targets.cmake DESTINATION ${cmake_folder})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/tvk_map-config.cmake.in tvk_map-config.cmake
                              INSTALL_DESTINATION ${cmake_folder} PATH_VARS module_folder)
write_basic_package_version_file(tvk_map-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tvk_map-config.cmake ${PROJECT_BINARY_DIR}/tvk_map-config-version.cmake
        DESTINATION ${cmake_folder})

# The prefix is told from where the file is, so that an installed tree can be moved.
file(RELATIVE_PATH prefix_from_pkgconfig /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
foreach(name tvk-map tvk-map-platform)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

install(FILES docs/tvk-map.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES tools/tvk-map/completion/tvk-map.bash RENAME tvk-map
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES docs/mapping-guide.md docs/operations.md docs/porting.md docs/subtree-filter.md
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tvk-map)
