# Steps of the consumer test; any failing step fails the test with its output.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    message("${out}")
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "step failed (${result}): ${ARGN}\n${err}")
    endif()
endfunction()

file(REMOVE_RECURSE ${PREFIX} ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${PREFIX})
set(toolchain)
if(TOOLCHAIN)
    set(toolchain -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
endif()
run(${CMAKE_COMMAND} -S ${PROJECT_DIR} -B ${WORK} -G ${GENERATOR} ${toolchain}
    -DCMAKE_PREFIX_PATH=${PREFIX} -DQanResources_DIR=${PREFIX}/lib/cmake/QanResources
    -DCMAKE_BUILD_TYPE=Release
    "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${LINKER_FLAGS}")
run(${CMAKE_COMMAND} --build ${WORK})
set(program_suffix "")
if(EMULATOR)
    # Windows finds the installed DLL beside the program.
    file(COPY ${PREFIX}/bin/QanResources.dll DESTINATION ${WORK})
    set(program_suffix ".exe")
endif()
run(${EMULATOR} ${WORK}/consumer${program_suffix})
