# `cmake --install`: the shared library, the public headers, the command, a CMake package
# (find_package(greycard), target greycard::greycard) and a .pc file for everybody else.
include(CMakePackageConfigHelpers)

install(TARGETS greycard greycard_api EXPORT greycardTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(TARGET greycard_command)
  # The installed command finds the library beside it, wherever the tree is put.
  set_target_properties(greycard_command PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS greycard_command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/api/greycard ${PROJECT_BINARY_DIR}/api/greycard
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
# The embedded spectra ask for attribution wherever a copy goes.
install(FILES ${PROJECT_SOURCE_DIR}/data/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR}
        RENAME spectral_data.md)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/greycard)
install(EXPORT greycardTargets NAMESPACE greycard:: FILE greycardTargets.cmake DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/greycardConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
configure_file(${PROJECT_SOURCE_DIR}/cmake/greycardConfig.cmake.in
               ${PROJECT_BINARY_DIR}/greycardConfig.cmake @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/cmake/greycard.pc.in ${PROJECT_BINARY_DIR}/greycard.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/greycardConfig.cmake
              ${PROJECT_BINARY_DIR}/greycardConfigVersion.cmake DESTINATION ${package_dir})
install(FILES ${PROJECT_BINARY_DIR}/greycard.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
