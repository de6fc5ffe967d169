# Installs the build into a fresh prefix, builds the consumer against it and runs it.
#   cmake -DBUILD=<build tree> -DSOURCE=<this folder> -DSTAGE=<folder to work in> -P run.cmake
function(step)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${ARGN}\nfailed with ${status}:\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${STAGE}")
step(${CMAKE_COMMAND} --install "${BUILD}" --prefix "${STAGE}/prefix")
step(${CMAKE_COMMAND} -S "${SOURCE}" -B "${STAGE}/build" -G Ninja
    "-DCMAKE_PREFIX_PATH=${STAGE}/prefix" -DCMAKE_BUILD_TYPE=Release)
step(${CMAKE_COMMAND} --build "${STAGE}/build")
step("${STAGE}/build/consumer")
message(STATUS "${output}")
if(EXPECT_KERNELS AND NOT output MATCHES "vector kernels found")
    message(FATAL_ERROR "The installed library does not find its vector kernels.")
endif()
