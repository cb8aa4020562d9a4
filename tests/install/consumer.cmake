# Installs the build into WORK/stage, builds the example against it with find_package, and runs it;
# then imports the Python module from there, and builds the example with pkg-config's answer alone.
function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/stage)
run(${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/build -D CMAKE_PREFIX_PATH=${WORK}/stage
    -D CMAKE_CXX_COMPILER=${CXX})
run(${CMAKE_COMMAND} --build ${WORK}/build)
run(${WORK}/stage/bin/greycard simulate -o ${WORK}/chart.png --seed 1)
run(${WORK}/build/fit_chart ${WORK}/chart.png)
if(PYTHON)
  run(${CMAKE_COMMAND} -E env PYTHONPATH=${WORK}/stage/${PYTHON_DIR} ${PYTHON} -c
      "import greycard.core as core; core.readPicture('${WORK}/chart.png')")
endif()

find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
  file(GLOB_RECURSE pc ${WORK}/stage/greycard.pc)
  execute_process(COMMAND ${PKG_CONFIG} --cflags --libs ${pc} OUTPUT_VARIABLE flags
                  COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run(${CXX} -std=c++20 ${SOURCE}/main.cpp -o ${WORK}/by_pkg_config ${flags})
endif()
