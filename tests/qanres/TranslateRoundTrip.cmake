# TranslateRoundTrip.cmake: export, import and pseudo on the command line. A directory of
# awkward stored texts (escapes, entities, controls, tagged fields, an override) goes out
# as PO and XLIFF and comes back; every key must then hand out exactly the text it handed
# out before, and the written files must be lint-clean and left alone by fmt.
# -DTOOL=path -DDATA=dir -DWORK=dir [-DMSGFMT=path]
include(${CMAKE_CURRENT_LIST_DIR}/ToolSteps.cmake)
# Wine takes the UTF-8 of the arguments from the locale.
set(ENV{LC_ALL} C.UTF-8)

function(expect_clean dir)
    run(0 out lint ${dir})
    if(NOT out MATCHES "^checked [^\n]*: 0 errors, 0 warnings[^\n]*\n$")
        message(FATAL_ERROR "lint ${dir} found:\n${out}")
    endif()
    run(0 out fmt --check ${dir})
endfunction()

function(expect_same_files a b)
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${a} ${b} RESULT_VARIABLE differs)
    if(differs)
        file(READ ${a} ta)
        file(READ ${b} tb)
        message(FATAL_ERROR "${a} and ${b} differ:\n${ta}\n----\n${tb}")
    endif()
endfunction()

set(src ${DATA}/translate)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
file(STRINGS ${src}/string.csv rows)
set(keys)
foreach(row IN LISTS rows)
    string(REGEX REPLACE ",.*" "" key "${row}")
    list(APPEND keys ${key})
endforeach()
list(LENGTH keys count)
if(count LESS 10)
    message(FATAL_ERROR "the test directory lost its keys")
endif()

foreach(format po xliff)
    set(dir ${WORK}/${format})
    file(MAKE_DIRECTORY ${dir})
    run(0 out export --format ${format} --source-lang en --resources ${src} -o
        ${WORK}/out.${format} ${src})
    run(2 out export --format ${format} -o ${WORK}/out.${format} ${src}) # exists: refused
    run(0 out import ${WORK}/out.${format} ${dir})
    expect_clean(${dir})
    # The imported directory hands out what the source did, through the library itself.
    foreach(key IN LISTS keys ITEMS c.tagged)
        set(kind string)
        if(key STREQUAL "c.tagged")
            set(kind caption)
        endif()
        execute_process(COMMAND ${tool} --master-strings ${src} --resources ${src} --escape
                                ${kind} ${key} OUTPUT_VARIABLE before RESULT_VARIABLE rcBefore)
        execute_process(COMMAND ${tool} --master-strings ${dir} --resources ${src} --escape
                                ${kind} ${key} OUTPUT_VARIABLE after RESULT_VARIABLE rcAfter)
        # A look-up answers with 0 or, for an empty text, 1; anything else did not run.
        if(NOT rcBefore MATCHES "^[01]$" OR NOT before STREQUAL after OR NOT rcBefore STREQUAL rcAfter)
            message(FATAL_ERROR "${format}: ${kind} ${key} was '${before}', is '${after}'")
        endif()
    endforeach()
    # And a second export is the first one, byte for byte.
    run(0 out export --format ${format} --source-lang en --resources ${src} -o
        ${WORK}/again.${format} ${dir})
    expect_same_files(${WORK}/out.${format} ${WORK}/again.${format})
    # Import over a directory with other texts: refused without --force, nothing changed.
    file(COPY ${dir}/strings.xml DESTINATION ${WORK}/saved-${format})
    run(0 out export --format ${format} ${DATA}/messy -o ${WORK}/other.${format})
    run(2 out import ${WORK}/other.${format} ${dir})
    expect_same_files(${dir}/strings.xml ${WORK}/saved-${format}/strings.xml)
    run(0 out import --force ${WORK}/other.${format} ${dir})
    expect_clean(${dir})
endforeach()

# Source and target: msgstr is the target's text.
file(MAKE_DIRECTORY ${WORK}/pair)
run(0 out export --force --source-lang en --resources ${src} -o ${WORK}/out.po ${src})
run(0 out import ${WORK}/out.po ${WORK}/pair)
run(0 pair export --source-lang en --target-lang de ${src} ${WORK}/pair)
if(NOT pair MATCHES "\"Language: de\\\\n\"\n" OR
   NOT pair MATCHES "msgctxt \"T.format\"\nmsgid \"Copied [^\n]*\"\nmsgstr \"Copied ")
    message(FATAL_ERROR "the pair export lacks the language or the target texts:\n${pair}")
endif()
file(WRITE ${WORK}/pair.po "${pair}")
if(MSGFMT)
    foreach(po out.po pair.po)
        execute_process(COMMAND ${MSGFMT} -c -o ${WORK}/check.mo ${WORK}/${po}
                        RESULT_VARIABLE rc ERROR_VARIABLE err)
        if(NOT rc EQUAL 0)
            message(FATAL_ERROR "msgfmt -c ${po}: ${err}")
        endif()
    endforeach()
endif()

# The start-up file keeps its ids and takes the imported texts.
file(MAKE_DIRECTORY ${WORK}/startup)
file(WRITE ${WORK}/startup/startupstrings.xml
     "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<strings>\n  <s id=\"T.tagged\">old</s>\n</strings>\n")
run(2 out import ${WORK}/out.po ${WORK}/startup)
run(0 out import --force ${WORK}/out.po ${WORK}/startup)
expect_clean(${WORK}/startup)
run(0 out --master-strings ${WORK}/startup --resources ${src} --escape caption c.tagged)
if(NOT out MATCHES "^\\\\x01CT=&Open")
    message(FATAL_ERROR "the start-up text was not replaced: ${out}")
endif()

# Pseudo-localisation: clean files, placeholders and markers intact, every text longer.
run(0 out pseudo ${src} ${WORK}/pseudo)
expect_clean(${WORK}/pseudo)
run(2 out pseudo --expand 50 ${src} ${WORK}/pseudo)
run(0 out --master-strings ${WORK}/pseudo --resources ${src} string k.format)
if(NOT out MATCHES "^\\[Çöþíéð %1\\$s öƒ %2\\$d \\(%-5.2f%%\\) íñţö {0}~+\\]\n$")
    message(FATAL_ERROR "pseudo k.format: ${out}")
endif()
run(0 out --master-strings ${WORK}/pseudo --resources ${src} --escape caption c.tagged)
if(NOT out MATCHES "^\\\\x01CT=\\[&O[^]]*\\]\\\\x01TT=\\[[^]]*\\]\\\\n\\[[^]]*\\]\\\\x01LP=\\[ẋ~*\\]\n$")
    message(FATAL_ERROR "pseudo c.tagged: ${out}")
endif()

# A start-up file already in the output that the source lacks is rewritten, not left stale.
file(WRITE ${WORK}/pseudo-stale/startupstrings.xml
     "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<strings>\n  <s id=\"S_STALE\">old</s>\n</strings>\n")
run(2 out pseudo ${WORK}/xliff ${WORK}/pseudo-stale)
run(0 out pseudo --force ${WORK}/xliff ${WORK}/pseudo-stale)
expect_clean(${WORK}/pseudo-stale)
