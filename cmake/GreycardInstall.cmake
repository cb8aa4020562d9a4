# `cmake --install`: the libraries, the public headers, the command, a CMake package
# (find_package(greycard), targets greycard::greycard, greycard::present, greycard::exchange and greycard::batch) and a .pc
# file for everybody else.
include(CMakePackageConfigHelpers)

get_property(components GLOBAL PROPERTY GREYCARD_COMPONENTS)
install(TARGETS greycard greycard_api ${components} EXPORT greycardTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(BUILD_SHARED_LIBS)
  # A component finds the library beside it, wherever the tree is put.
  set_target_properties(${components} PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()
if(TARGET greycard_command)
  # The installed command finds the library beside it, wherever the tree is put.
  file(RELATIVE_PATH libdir_from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(greycard_command PROPERTIES INSTALL_RPATH "$ORIGIN/${libdir_from_bin}")
  install(TARGETS greycard_command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/api/greycard ${PROJECT_BINARY_DIR}/api/greycard
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
# The licence and the embedded spectra ask to go, with their attribution, wherever a copy goes.
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${PROJECT_SOURCE_DIR}/data/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR}
        RENAME spectral_data.md)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/greycard)
install(EXPORT greycardTargets NAMESPACE greycard:: FILE greycardTargets.cmake DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/greycardConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
configure_file(${PROJECT_SOURCE_DIR}/cmake/greycardConfig.cmake.in
               ${PROJECT_BINARY_DIR}/greycardConfig.cmake @ONLY)
if(NOT BUILD_SHARED_LIBS) # then a program links what the library uses
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/FindOpenCVParts.cmake
                ${PROJECT_SOURCE_DIR}/cmake/FindLCMS2.cmake
                ${PROJECT_SOURCE_DIR}/cmake/FindLibRaw.cmake
                ${PROJECT_SOURCE_DIR}/cmake/FindRsvg.cmake
                ${PROJECT_SOURCE_DIR}/cmake/FindXXHash.cmake DESTINATION ${package_dir})
endif()
file(RELATIVE_PATH prefix_from_pc ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH libdir_in_prefix ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH includedir_in_prefix ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
set(static_libs "")
if(NOT BUILD_SHARED_LIBS)
  set(static_libs "Libs.private: -lopencv_imgcodecs -lopencv_imgproc -lopencv_core -lnlopt -lstdc++ -lm")
  if(GREYCARD_WITH_RAW)
    string(APPEND static_libs " -lraw_r")
  endif()
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/greycard.pc.in ${PROJECT_BINARY_DIR}/greycard.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/greycardConfig.cmake
              ${PROJECT_BINARY_DIR}/greycardConfigVersion.cmake DESTINATION ${package_dir})
install(FILES ${PROJECT_BINARY_DIR}/greycard.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# `cpack`: the same as an archive to unpack at the root, or a package.
set(CPACK_GENERATOR TGZ)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
include(CPack)
