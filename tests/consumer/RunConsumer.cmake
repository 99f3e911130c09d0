# Steps of the consumer test; any failing step fails the test with its output.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    message("${out}")
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "step failed (${result}): ${ARGN}\n${err}")
    endif()
endfunction()

file(REMOVE_RECURSE ${PREFIX} ${WORK} ${WORK}-bad ${WORK}-pkgconfig)
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${PREFIX})
set(toolchain)
if(TOOLCHAIN)
    set(toolchain -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
endif()

# The build-time check runs where the tool was built and installed.
set(qanres ${PREFIX}/bin/qanres)
set(check)
if(EXISTS ${qanres} AND NOT EMULATOR)
    set(check -DRESOURCES_TO_CHECK=${PROJECT_DIR}/resources)
endif()

function(configure_host dir)
    run(${CMAKE_COMMAND} -S ${PROJECT_DIR} -B ${dir} -G ${GENERATOR} ${toolchain}
        -DCMAKE_PREFIX_PATH=${PREFIX} -DQanResources_DIR=${PREFIX}/lib/cmake/QanResources
        -DCMAKE_BUILD_TYPE=Release
        "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${LINKER_FLAGS}" ${ARGN})
endfunction()

configure_host(${WORK} ${check})
run(${CMAKE_COMMAND} --build ${WORK})
set(program_suffix "")
if(EMULATOR)
    # Windows finds the installed DLL beside the program.
    file(COPY ${PREFIX}/bin/QanResources.dll DESTINATION ${WORK})
    set(program_suffix ".exe")
endif()
run(${EMULATOR} ${WORK}/consumer${program_suffix})

if(check)
    # An unsorted key table must fail the host's build, naming the file.
    set(bad ${WORK}-bad/resources)
    file(WRITE ${bad}/string.csv "Host.Tool,STR_TOOL\nHost.Title,STR_TITLE\n")
    configure_host(${WORK}-bad -DRESOURCES_TO_CHECK=${bad})
    execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}-bad RESULT_VARIABLE result
                    OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(result EQUAL 0 OR NOT "${out}${err}" MATCHES "string.csv")
        message(FATAL_ERROR "an unsorted key table did not fail the build:\n${out}\n${err}")
    endif()
    message("consumer: the resource check failed the build on an unsorted key table")
endif()

if(NOT EMULATOR)
    # A host built without CMake, with the flags pkg-config gives.
    find_program(PKG_CONFIG pkg-config REQUIRED)
    set(ENV{PKG_CONFIG_PATH} ${PREFIX}/lib/pkgconfig)
    execute_process(COMMAND ${PKG_CONFIG} --cflags --libs QanResources RESULT_VARIABLE result
                    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "pkg-config does not know QanResources")
    endif()
    separate_arguments(flags UNIX_COMMAND "${flags}")
    separate_arguments(cxx_flags UNIX_COMMAND "${CXX_FLAGS}")
    separate_arguments(linker_flags UNIX_COMMAND "${LINKER_FLAGS}")
    file(MAKE_DIRECTORY ${WORK}-pkgconfig)
    run(${CXX} -std=c++20 ${cxx_flags} ${PROJECT_DIR}/main.cpp ${flags} ${linker_flags}
        -Wl,-rpath,${PREFIX}/lib -o ${WORK}-pkgconfig/consumer)
    run(${WORK}-pkgconfig/consumer)
endif()
message("consumer: every step passed")
