# The Debian package, made by: cpack --config BUILD/CPackConfig.cmake
# Its contents are the component "debian", which nothing else installs.
set(parts ${PROJECT_SOURCE_DIR}/packaging/linux)
set(icons ${PROJECT_SOURCE_DIR}/resources/icons)

macro(install_for_debian)
  install(${ARGN} COMPONENT debian EXCLUDE_FROM_ALL)
endmacro()

install_for_debian(TARGETS quorrix RUNTIME DESTINATION lib/quorrix)
install_for_debian(FILES ${PROJECT_BINARY_DIR}/bin/Quorrix.hlp DESTINATION lib/quorrix)
install_for_debian(PROGRAMS ${parts}/make-data-folder DESTINATION lib/quorrix)
install_for_debian(PROGRAMS ${parts}/debian/quorrix DESTINATION bin)
install_for_debian(TARGETS quorrix_data RUNTIME DESTINATION bin)
install_for_debian(FILES ${parts}/quorrix-data.bash-completion
  DESTINATION share/bash-completion/completions RENAME quorrix-data)
install_for_debian(FILES ${parts}/quorrix.desktop DESTINATION share/applications)
install_for_debian(FILES ${PROJECT_BINARY_DIR}/packaging/org.quorrix.Quorrix.metainfo.xml
  DESTINATION share/metainfo)
install_for_debian(FILES ${icons}/quorrix.svg DESTINATION share/icons/hicolor/scalable/apps)
foreach(size 16 22 24 32 48 64 128 256 512)
  install_for_debian(FILES ${icons}/quorrix-${size}.png
    DESTINATION share/icons/hicolor/${size}x${size}/apps RENAME quorrix.png)
endforeach()
install_for_debian(FILES ${parts}/debian/copyright DESTINATION share/doc/quorrix)

# Debian requires compressed manual pages and changelogs.
function(install_compressed source name destination)
  set(compressed ${CMAKE_CURRENT_BINARY_DIR}/debian/${name})
  add_custom_command(OUTPUT ${compressed} DEPENDS ${source}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_CURRENT_BINARY_DIR}/debian
    COMMAND gzip -9nc ${source} > ${compressed})
  add_custom_target(compressed_${name} ALL DEPENDS ${compressed})
  install_for_debian(FILES ${compressed} DESTINATION ${destination})
endfunction()
install_compressed(${parts}/debian/changelog changelog.gz share/doc/quorrix)
install_compressed(${parts}/debian/quorrix.1 quorrix.1.gz share/man/man1)
install_compressed(${parts}/quorrix-data.1 quorrix-data.1.gz share/man/man1)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL debian)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_PACKAGE_CONTACT "Quorrix developers <developers@quorrix.example>")
set(CPACK_DEBIAN_PACKAGE_NAME quorrix)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "record of the web sites you visit")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION web)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Needed to read the address, but no library depends on it.
set(CPACK_DEBIAN_PACKAGE_DEPENDS at-spi2-core)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qt6-wayland)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"While tracking is on, Quorrix reads the address from the browser that you
are using and files it in a tree: a branch for every host, a node for every
page, with the scheme and the time of your latest visit. For each site it
keeps notes, a user ID and password, and purchases.
.
The command quorrix-data lists, searches, exports, checks and copies what
was recorded.
.
It opens no network connection. Your sites are in files of your own, beside
your own copy of the program in your home.")
include(CPack)
