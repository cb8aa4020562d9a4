# xxHash as the imported target XXHash::xxhash.
find_path(XXHASH_INCLUDE_DIR xxhash.h)
find_library(XXHASH_LIBRARY xxhash)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(XXHash REQUIRED_VARS XXHASH_LIBRARY XXHASH_INCLUDE_DIR
                                  REASON_FAILURE_MESSAGE "install libxxhash-dev")

if(XXHash_FOUND)
  add_library(XXHash::xxhash UNKNOWN IMPORTED)
  set_target_properties(XXHash::xxhash PROPERTIES IMPORTED_LOCATION ${XXHASH_LIBRARY}
                                                INTERFACE_INCLUDE_DIRECTORIES ${XXHASH_INCLUDE_DIR})
endif()
