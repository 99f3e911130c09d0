# RunTool.cmake: runs the tool once and checks its exit status, and its output against a
# golden file (the source directory shown as <src>, module handles as <ptr>).
# -DTOOL=path -DARGS=a|b|c -DEXPECT_RC=n [-DGOLDEN=file] [-DSTDERR_MATCH=regex]
# [-DSRC=dir] [-DLIBPATH=dir]
include(${CMAKE_CURRENT_LIST_DIR}/ToolSteps.cmake)
string(REPLACE "|" ";" args "${ARGS}")
if(LIBPATH)
    set(ENV{LD_LIBRARY_PATH} "${LIBPATH}")
    # Wine's library search takes Windows paths; Z: is the root of the build machine.
    string(REPLACE "/" "\\" windowsPath "Z:${LIBPATH}")
    set(ENV{WINEPATH} "${windowsPath}")
endif()
execute_process(COMMAND ${tool} ${args} RESULT_VARIABLE rc OUTPUT_VARIABLE out
                ERROR_VARIABLE err)
if(NOT rc STREQUAL EXPECT_RC)
    message(FATAL_ERROR "exit status ${rc}, expected ${EXPECT_RC}\nstdout:\n${out}\nstderr:\n${err}")
endif()
if(GOLDEN)
    if(SRC)
        string(REPLACE "${SRC}" "<src>" out "${out}")
    endif()
    string(REGEX REPLACE "module: (0x)?[0-9a-fA-F]+\n" "module: <ptr>\n" out "${out}")
    # Paths that the library joins show the system's separator: a Windows golden, where
    # there is one, holds them as Windows prints them.
    string(REGEX REPLACE "\\.txt$" ".windows.txt" windowsGolden "${GOLDEN}")
    if(tool MATCHES "wine" AND EXISTS "${windowsGolden}")
        set(GOLDEN "${windowsGolden}")
    endif()
    file(READ "${GOLDEN}" expected)
    if(NOT out STREQUAL expected)
        message(FATAL_ERROR "output differs from ${GOLDEN}\n--- got:\n${out}--- expected:\n${expected}")
    endif()
endif()
if(DEFINED STDERR_MATCH)
    string(REGEX MATCHALL "\n" lines "${err}")
    list(LENGTH lines count)
    if(NOT err MATCHES "${STDERR_MATCH}" OR NOT count EQUAL 1)
        message(FATAL_ERROR "stderr should be one line matching '${STDERR_MATCH}', got:\n${err}")
    endif()
endif()
