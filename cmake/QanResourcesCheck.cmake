# qanres_check_resources(<name> [RESOURCES <dir>...] [MASTER_STRINGS <dir>...])
#
# Adds a target <name>, built with ALL, that checks a product's resource directories with
# `qanres lint` and `qanres fmt --check` whenever one of their files changes, so that an
# unsorted table or a malformed text fails the host's build instead of missing keys at
# run time. Every directory given is checked; the target fails on any finding of lint's
# error level and on any file that fmt would rewrite.
#
#   find_package(QanResources CONFIG REQUIRED)
#   qanres_check_resources(check_resources RESOURCES ${CMAKE_SOURCE_DIR}/res
#                          MASTER_STRINGS ${CMAKE_SOURCE_DIR}/strings/en)
function(qanres_check_resources name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "RESOURCES;MASTER_STRINGS")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "qanres_check_resources: unknown arguments ${arg_UNPARSED_ARGUMENTS}")
    endif()
    set(dirs ${arg_RESOURCES} ${arg_MASTER_STRINGS})
    if(NOT dirs)
        message(FATAL_ERROR "qanres_check_resources: give RESOURCES or MASTER_STRINGS")
    endif()
    if(TARGET QanResources::qanres)
        set(qanres $<TARGET_FILE:QanResources::qanres>)
    else()
        find_program(QANRES_EXECUTABLE qanres REQUIRED)
        set(qanres ${QANRES_EXECUTABLE})
    endif()

    set(commands)
    set(depends)
    foreach(dir IN LISTS dirs)
        get_filename_component(dir ${dir} ABSOLUTE)
        file(GLOB_RECURSE files CONFIGURE_DEPENDS ${dir}/*)
        list(APPEND depends ${files})
        list(APPEND commands COMMAND ${qanres} lint ${dir} COMMAND ${qanres} fmt --check ${dir})
    endforeach()
    set(stamp ${CMAKE_CURRENT_BINARY_DIR}/${name}.checked)
    add_custom_command(OUTPUT ${stamp} ${commands}
                       COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
                       DEPENDS ${depends}
                       COMMENT "Checking resources with qanres lint and fmt --check"
                       VERBATIM)
    add_custom_target(${name} ALL DEPENDS ${stamp})
endfunction()
