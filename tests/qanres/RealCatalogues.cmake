# RealCatalogues.cmake: gettext catalogues installed on this machine, decompiled with
# msgunfmt, imported by the id rule for PO files that export did not write, exported
# again and checked with msgfmt -c. Importing the same file twice gives the same files
# (ids are stable), and importing the PO or XLIFF export gives them once more (nothing
# lost).
# -DTOOL=path -DMSGFMT=path -DMSGUNFMT=path -DWORK=dir
# Plural forms and format flags (coreutils), contexts (gtk20), a non-Latin script with
# contexts and plurals (glib20 in Japanese); the rest stand in where those are missing.
set(candidates
    de/LC_MESSAGES/coreutils.mo fr/LC_MESSAGES/gtk20.mo ja/LC_MESSAGES/glib20.mo
    de/LC_MESSAGES/glib20.mo fr/LC_MESSAGES/coreutils.mo de/LC_MESSAGES/bash.mo
    es/LC_MESSAGES/grep.mo de/LC_MESSAGES/tar.mo)
set(catalogues)
foreach(candidate IN LISTS candidates)
    list(LENGTH catalogues n)
    if(n LESS 3 AND EXISTS /usr/share/locale/${candidate})
        list(APPEND catalogues /usr/share/locale/${candidate})
    endif()
endforeach()
if(NOT catalogues)
    message("SKIPPED: none of the catalogues is installed")
    return()
endif()


include(${CMAKE_CURRENT_LIST_DIR}/ToolSteps.cmake)
file(REMOVE_RECURSE ${WORK})
foreach(mo IN LISTS catalogues)
    string(REGEX REPLACE "^/usr/share/locale/([^/]+)/LC_MESSAGES/(.*)\\.mo$" "\\1-\\2" name ${mo})
    set(dir ${WORK}/${name})
    file(MAKE_DIRECTORY ${dir}/first ${dir}/second ${dir}/back ${dir}/xliff)
    run_command(0 out ${MSGUNFMT} -o ${dir}/catalogue.po ${mo})
    run(0 out import ${dir}/catalogue.po ${dir}/first)
    if(NOT lastErr MATCHES "qanres: import: [0-9]+ messages gave [0-9]+ strings \\(ids derived")
        message(FATAL_ERROR "${name}: no import summary:\n${lastErr}")
    endif()
    message(STATUS "${name}:\n${lastErr}")
    run(0 out lint ${dir}/first)
    if(NOT out MATCHES "^checked [^\n]*: 0 errors, 0 warnings[^\n]*\n$")
        message(FATAL_ERROR "${name}: lint found:\n${out}")
    endif()
    run(0 out fmt --check ${dir}/first)
    run(0 out export --target-lang xx -o ${dir}/exported.po ${dir}/first)
    run_command(0 out ${MSGFMT} -c -o ${dir}/exported.mo ${dir}/exported.po)
    run(0 out import ${dir}/catalogue.po ${dir}/second)
    run(0 out import ${dir}/exported.po ${dir}/back)
    run(0 out export --format xliff -o ${dir}/exported.xlf ${dir}/first)
    run(0 out import ${dir}/exported.xlf ${dir}/xliff)
    foreach(other second back xliff)
        execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${dir}/first/strings.xml
                                ${dir}/${other}/strings.xml RESULT_VARIABLE differs)
        if(differs)
            message(FATAL_ERROR "${name}: the ${other} import differs from the first")
        endif()
    endforeach()
    # Every message of the catalogue is a string: as many strings as msgstr lines.
    file(READ ${dir}/catalogue.po po)
    file(READ ${dir}/first/strings.xml xml)
    string(REGEX MATCHALL "\nmsgstr" msgstrs "${po}")
    string(REGEX MATCHALL "\n  <s id=" strings "${xml}")
    list(LENGTH msgstrs m)
    list(LENGTH strings s)
    math(EXPR m "${m} - 1") # the header
    if(NOT m EQUAL s)
        message(FATAL_ERROR "${name}: ${m} msgstr lines but ${s} strings")
    endif()
endforeach()
