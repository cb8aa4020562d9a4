# Installs the build into WORK/stage, builds the example against it with find_package, and runs it.
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
