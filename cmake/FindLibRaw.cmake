# LibRaw's re-entrant library as the imported target LibRaw::raw_r.
find_path(LIBRAW_INCLUDE_DIR libraw/libraw.h)
find_library(LIBRAW_LIBRARY raw_r)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(LibRaw REQUIRED_VARS LIBRAW_LIBRARY LIBRAW_INCLUDE_DIR
                                  REASON_FAILURE_MESSAGE "install libraw-dev")

if(LibRaw_FOUND AND NOT TARGET LibRaw::raw_r)
  add_library(LibRaw::raw_r UNKNOWN IMPORTED)
  set_target_properties(LibRaw::raw_r PROPERTIES IMPORTED_LOCATION ${LIBRAW_LIBRARY}
                                                 INTERFACE_INCLUDE_DIRECTORIES ${LIBRAW_INCLUDE_DIR})
endif()
