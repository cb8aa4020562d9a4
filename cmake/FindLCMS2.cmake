# Little CMS 2 as the imported target LCMS2::lcms2.
find_path(LCMS2_INCLUDE_DIR lcms2.h)
find_library(LCMS2_LIBRARY lcms2)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(LCMS2 REQUIRED_VARS LCMS2_LIBRARY LCMS2_INCLUDE_DIR
                                  REASON_FAILURE_MESSAGE "install liblcms2-dev")

if(LCMS2_FOUND)
  add_library(LCMS2::lcms2 UNKNOWN IMPORTED)
  set_target_properties(LCMS2::lcms2 PROPERTIES IMPORTED_LOCATION ${LCMS2_LIBRARY}
                                                INTERFACE_INCLUDE_DIRECTORIES ${LCMS2_INCLUDE_DIR})
endif()
