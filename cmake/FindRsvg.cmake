# librsvg, which draws SVG with cairo, as the imported target Rsvg::rsvg.
find_package(PkgConfig QUIET)
if(PkgConfig_FOUND)
  pkg_check_modules(RSVG QUIET IMPORTED_TARGET librsvg-2.0 cairo)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Rsvg REQUIRED_VARS RSVG_LINK_LIBRARIES
                                  REASON_FAILURE_MESSAGE "install librsvg2-dev and pkg-config")

if(Rsvg_FOUND AND NOT TARGET Rsvg::rsvg)
  add_library(Rsvg::rsvg ALIAS PkgConfig::RSVG)
endif()
