# What `cmake --install` puts under the prefix: the headers below
# include/sxcodeedit, the libraries, a CMake package with imported targets
# (find_package(SxCodeEdit 1.0), the data-aware editor as the component
# dbcodeedit) and a pkg-config file per library.
include(CMakePackageConfigHelpers)

set(SX_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/SxCodeEdit)

# The data-aware editor's headers go only with its libraries.
set(SX_DB_HEADERS_EXCLUDED)
if(NOT SX_BUILD_DB)
  set(SX_DB_HEADERS_EXCLUDED REGEX "/(Db|DbLinks|SqliteDatabase|SqliteDataSet|uSxDbCodeEdit)\\.h$" EXCLUDE)
endif()
install(DIRECTORY src/platform src/codeedit src/face
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/sxcodeedit
        FILES_MATCHING PATTERN "*.h" PATTERN "*Private.h" EXCLUDE ${SX_DB_HEADERS_EXCLUDED})

# Two export sets: the plain editor, and the data-aware one, whose targets
# (and, for static libraries, SQLite) are looked for only when asked for.
set(SX_LIBRARY_DESTINATIONS
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    OBJECTS DESTINATION ${CMAKE_INSTALL_LIBDIR}/sxcodeedit-objects)
install(TARGETS sxparsers sxcodeedit sxcodeeditor ${SX_RESOURCE_TARGETS} EXPORT SxCodeEditTargets ${SX_LIBRARY_DESTINATIONS})
install(EXPORT SxCodeEditTargets NAMESPACE SxCodeEdit:: DESTINATION ${SX_PACKAGE_DIR})
if(SX_BUILD_DB)
  install(TARGETS ${SX_DB_LIBRARIES} EXPORT SxCodeEditDbTargets ${SX_LIBRARY_DESTINATIONS})
  install(EXPORT SxCodeEditDbTargets NAMESPACE SxCodeEdit:: DESTINATION ${SX_PACKAGE_DIR})
endif()

configure_package_config_file(cmake/SxCodeEditConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/SxCodeEditConfig.cmake INSTALL_DESTINATION ${SX_PACKAGE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/SxCodeEditConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/SxCodeEditConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/SxCodeEditConfigVersion.cmake
        DESTINATION ${SX_PACKAGE_DIR})

# pkg-config: one file per library, each naming what it needs. The prefix
# is found from the file's own folder, so a tree installed with --prefix
# anywhere, or moved, still answers right.
file(RELATIVE_PATH SX_PC_PREFIX_FROM_PCFILEDIR /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
function(sx_pkg_config library description requires requires_private)
  set(SX_PC_NAME ${library})
  set(SX_PC_DESCRIPTION "${description}")
  set(SX_PC_REQUIRES "${requires}")
  set(SX_PC_REQUIRES_PRIVATE "${requires_private}")
  configure_file(cmake/sxlibrary.pc.in ${CMAKE_CURRENT_BINARY_DIR}/pkgconfig/${library}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/pkgconfig/${library}.pc
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
sx_pkg_config(sxparsers "Colouring language parsers and the line store of the Sx code editor" "" "libpcre2-16")
sx_pkg_config(sxcodeedit "The Sx code editing control for Qt 6 widgets" "sxparsers Qt6Widgets" "")
sx_pkg_config(sxcodeeditor "SxCodeEditor, the Sx code editor as a Qt widget with signals and slots" "sxcodeedit" "")
if(SX_BUILD_DB)
  sx_pkg_config(sxdb "Data access over SQLite for the data-aware Sx code editor" "sxparsers" "sqlite3")
  sx_pkg_config(sxdbcodeedit "The data-aware Sx code editor, bound to a field of a data set" "sxcodeedit sxdb" "")
endif()
