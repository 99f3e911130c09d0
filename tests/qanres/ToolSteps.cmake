# ToolSteps.cmake: what the tool's test scripts share, included by each of them.
# TOOL (given with -D) is the command that runs the tool: on a cross build, the emulator
# and the program, joined with "|". `tool` is that command as a list.
string(REPLACE "|" ";" tool "${TOOL}")

# run_command(expectRc outVar command...): runs the command and fails the test with its
# output unless it exits with expectRc; stdout goes to outVar, stderr to lastErr.
function(run_command expectRc outVar)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT rc STREQUAL expectRc)
        message(FATAL_ERROR "${ARGN}: exit ${rc}, expected ${expectRc}\n${out}${err}")
    endif()
    set(${outVar} "${out}" PARENT_SCOPE)
    set(lastErr "${err}" PARENT_SCOPE)
endfunction()

# run(expectRc outVar arguments...): run_command for the tool with these arguments.
function(run expectRc outVar)
    run_command(${expectRc} out ${tool} ${ARGN})
    set(${outVar} "${out}" PARENT_SCOPE)
    set(lastErr "${lastErr}" PARENT_SCOPE)
endfunction()
