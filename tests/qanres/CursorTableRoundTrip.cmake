# CursorTableRoundTrip.cmake: write a table from an unordered list, refuse to overwrite it
# without --force, dump it back in the library's search order, and lint it.
# -DTOOL=path -DLIST=file -DWORK=dir -DGOLDEN=file
include(${CMAKE_CURRENT_LIST_DIR}/ToolSteps.cmake)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
set(table ${WORK}/cursors.bin)
execute_process(COMMAND ${tool} cursor-table write ${LIST} ${table} RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
    message(FATAL_ERROR "write failed: ${rc}")
endif()
file(SIZE ${table} size)
execute_process(COMMAND ${tool} cursor-table write ${LIST} ${table} RESULT_VARIABLE rc
                ERROR_VARIABLE err)
file(SIZE ${table} sizeAfter)
if(NOT rc EQUAL 2 OR NOT err MATCHES "--force" OR NOT size EQUAL sizeAfter)
    message(FATAL_ERROR "an existing table must not be overwritten without --force (${rc}): ${err}")
endif()
execute_process(COMMAND ${tool} cursor-table write --force ${LIST} ${table} RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
    message(FATAL_ERROR "write --force failed: ${rc}")
endif()
execute_process(COMMAND ${tool} cursor-table dump ${table} RESULT_VARIABLE rc
                OUTPUT_VARIABLE out)
file(READ ${GOLDEN} expected)
if(NOT rc EQUAL 0 OR NOT out STREQUAL expected)
    message(FATAL_ERROR "dump (${rc}):\n${out}expected:\n${expected}")
endif()
# The list names Arrow twice on purpose: a warning, and the first listed is the one found.
execute_process(COMMAND ${tool} lint ${WORK} RESULT_VARIABLE rc OUTPUT_VARIABLE out)
if(NOT rc EQUAL 0 OR NOT out MATCHES "^[^\n]*cursors.bin:1:2: warning: duplicate cursor 'Arrow': the library uses entry 1\nchecked 1 file in 1 directory: 0 errors, 1 warning\n$")
    message(FATAL_ERROR "lint of the written table (${rc}):\n${out}")
endif()
