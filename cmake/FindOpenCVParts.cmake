# The three OpenCV modules that greycard uses, as imported targets OpenCVParts::core, ::imgproc and
# ::imgcodecs. Debian keeps OpenCV's own CMake files in libopencv-dev, which pulls in some 300
# packages that we have no use for; the three small -dev packages hold all that is needed here.
find_path(OPENCV_INCLUDE_DIR opencv2/core.hpp PATH_SUFFIXES opencv4)
set(required OPENCV_INCLUDE_DIR)
foreach(part core imgproc imgcodecs)
  find_library(OPENCV_${part}_LIBRARY opencv_${part})
  list(APPEND required OPENCV_${part}_LIBRARY)
endforeach()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
  OpenCVParts REQUIRED_VARS ${required}
  REASON_FAILURE_MESSAGE
    "install libopencv-core-dev, libopencv-imgproc-dev and libopencv-imgcodecs-dev")

if(OpenCVParts_FOUND)
  foreach(part core imgproc imgcodecs)
    add_library(OpenCVParts::${part} UNKNOWN IMPORTED)
    set_target_properties(
      OpenCVParts::${part} PROPERTIES IMPORTED_LOCATION ${OPENCV_${part}_LIBRARY}
                                      INTERFACE_INCLUDE_DIRECTORIES ${OPENCV_INCLUDE_DIR})
  endforeach()
  target_link_libraries(OpenCVParts::imgproc INTERFACE OpenCVParts::core)
  target_link_libraries(OpenCVParts::imgcodecs INTERFACE OpenCVParts::core)
endif()
