# Installs the build into a fresh prefix, builds the consumer against it and runs it.
#   cmake -DBUILD=<build tree> -DSOURCE=<this folder> -DSTAGE=<folder to work in>
#         [-DLAUNCHER=<compiler launcher>] [-DEXPECT_KERNELS=ON] -P run.cmake
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
    "-DCMAKE_PREFIX_PATH=${STAGE}/prefix" -DCMAKE_BUILD_TYPE=Release
    "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}")
step(${CMAKE_COMMAND} --build "${STAGE}/build")
step("${STAGE}/build/server")
step(ldd "${STAGE}/build/server")
if(output MATCHES "Qt5Widgets")
    message(FATAL_ERROR "What links the operations alone loads QtWidgets.")
endif()
step("${STAGE}/build/consumer")
message(STATUS "${output}")
set(cmake_output "${output}")

# The same program without CMake.
file(GLOB_RECURSE pc "${STAGE}/prefix/*/adjustmentgui.pc")
get_filename_component(pc_dir "${pc}" DIRECTORY)
get_filename_component(lib_dir "${pc_dir}" DIRECTORY)
set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
step(pkg-config --cflags --libs adjustmentgui)
separate_arguments(flags UNIX_COMMAND "${output}")
step(c++ -std=c++17 -fPIC "${SOURCE}/main.cpp" -o "${STAGE}/consumer-pc" ${flags} "-Wl,-rpath,${lib_dir}")
step("${STAGE}/consumer-pc")
step(pkg-config --cflags --libs adjustmentgui-operations)
separate_arguments(flags UNIX_COMMAND "${output}")
step(c++ -std=c++17 -fPIC "${SOURCE}/server.cpp" -o "${STAGE}/server-pc" ${flags} -pthread "-Wl,-rpath,${lib_dir}")
step("${STAGE}/server-pc")
if(EXPECT_KERNELS AND NOT cmake_output MATCHES "vector kernels found")
    message(FATAL_ERROR "The installed library does not find its vector kernels.")
endif()
