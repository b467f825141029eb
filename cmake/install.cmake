# What is installed: the program, both libraries, their headers, and what other builds find them by.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vornwout)

# The program and the libraries find each other wherever the prefix is moved to.
set_target_properties(vornwout_program PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
set_target_properties(vornwout vornplatform vornxml PROPERTIES INSTALL_RPATH "$ORIGIN")

install(TARGETS vornwout_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS vornxml LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(TARGET vorndraw)
  set_target_properties(vorndraw PROPERTIES INSTALL_RPATH "$ORIGIN")
  install(TARGETS vorndraw LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()
install(TARGETS vornplatform vornwout EXPORT vornwout-targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY platform/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vornwout/platform
        FILES_MATCHING PATTERN "*.h" PATTERN "strings/tool" EXCLUDE)
install(FILES libvornwout/include/vornwout/entry_points.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vornwout)
install(FILES README.md docs/language-reference.md docs/messages.md docs/traces.md
              docs/file-format.md docs/document.xsd docs/modify-document.md docs/modify-document.xsd docs/export-documents.md
              docs/string-tables.md docs/looks.md docs/table-look.xsd docs/chart-template.xsd docs/export-document.xsd
              docs/export-response.xsd
        DESTINATION ${CMAKE_INSTALL_DOCDIR})

install(EXPORT vornwout-targets NAMESPACE vornwout:: DESTINATION ${package_dir})
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/vornwout-config.cmake
     "include(\"\${CMAKE_CURRENT_LIST_DIR}/vornwout-targets.cmake\")\n")
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/vornwout-config-version.cmake
                                 COMPATIBILITY SameMinorVersion)
configure_file(cmake/vornwout.pc.in vornwout.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vornwout-config.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/vornwout-config-version.cmake
        DESTINATION ${package_dir})
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vornwout.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES docs/manifest-schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/vornwout)
install(DIRECTORY Looks DESTINATION ${CMAKE_INSTALL_DATADIR}/vornwout
        FILES_MATCHING PATTERN "*.qtt" PATTERN "*.qgt" PATTERN "*.qgs")
install(DIRECTORY ${PROJECT_BINARY_DIR}/lang DESTINATION ${CMAKE_INSTALL_DATADIR}/vornwout
        FILES_MATCHING PATTERN "*.qbb")
