# End-to-end tests of the qanres tool: each runs the binary through RunTool.cmake. On a
# cross build the tool runs under the emulator (Wine), with the same goldens.
set(tool $<TARGET_FILE:qanres>)
if(CMAKE_CROSSCOMPILING_EMULATOR)
    list(JOIN CMAKE_CROSSCOMPILING_EMULATOR "|" emulator)
    set(tool "${emulator}|${tool}")
endif()
set(run ${CMAKE_CURRENT_SOURCE_DIR}/RunTool.cmake)
set(golden ${CMAKE_CURRENT_SOURCE_DIR}/golden)
set(ex ${PROJECT_SOURCE_DIR}/examples)
set(settings "--master-strings|${ex}/resources|--resources|${ex}/resources|--icons|${ex}/icons|--icon-subdir|Toolbar|--base|${ex}/base")
set(brush 54b35f3f-c7bc-5c6d-bbd5-6fed7ef6d902)
set(save 8cd7249b-2f23-56a8-a2af-ca42e9dfb0fd)
set(smudge b9557ff1-6a23-549b-85c1-794ef1674d2d)
set(pencil ff96f8c6-d924-56e7-9ed9-02fb51a99859)

# qanres_tool_test(name rc golden-or-"" arg...): the look-ups use the example settings.
function(qanres_tool_test name rc goldenFile)
    list(JOIN ARGN "|" args)
    set(extra)
    if(goldenFile)
        list(APPEND extra -DGOLDEN=${golden}/${goldenFile})
    endif()
    add_test(NAME qanres.${name}
             COMMAND ${CMAKE_COMMAND} "-DTOOL=${tool}" "-DARGS=${args}"
                     -DEXPECT_RC=${rc} -DSRC=${PROJECT_SOURCE_DIR} ${extra} ${QANRES_TEST_EXTRA}
                     -P ${run})
endfunction()

# Strings: start-up texts with their overrides, the lazy full file, decoding.
qanres_tool_test(string.override 0 string-override.txt ${settings} string Daubery.AppTitle)
qanres_tool_test(string.escapes 0 string-escapes.txt ${settings} --escape string Daubery.UnsavedChanges)
qanres_tool_test(string.backslashes 0 string-backslashes.txt ${settings} string Daubery.ExportFolder)
qanres_tool_test(string.slashes 0 string-slashes.txt ${settings} string Daubery.HelpSite)
qanres_tool_test(string.entities 0 string-entities.txt ${settings} string Daubery.Layers)
qanres_tool_test(string.unicode 0 string-unicode.txt ${settings} string Daubery.Greeting)
qanres_tool_test(string.missing 1 empty-line.txt ${settings} string Daubery.NoSuchKey)
qanres_tool_test(caption.startup 0 caption-brush.txt ${settings} caption ${brush})
qanres_tool_test(caption.full-with-override 0 caption-smudge.txt ${settings} caption ${smudge})
qanres_tool_test(tooltip-header 0 tooltip-header-brush.txt ${settings} tooltip-header ${brush})
qanres_tool_test(tooltip-body 0 tooltip-body-save.txt ${settings} tooltip-body --escape ${save})
qanres_tool_test(legacy-string.composed 0 legacy-string-brush.txt ${settings} legacy-string --escape ${brush})
qanres_tool_test(legacy-guid.table 0 legacy-guid.txt legacy-guid mirrowtack 22536)
qanres_tool_test(legacy-guid.unknown 1 empty-line.txt legacy-guid NoSuchComponent 999999)

# Icons and paths.
qanres_tool_test(icon.png 0 icon-pencil.txt ${settings} icon ${pencil})
qanres_tool_test(icon.folder 0 icon-brush.txt ${settings} icon ${brush})
qanres_tool_test(icon.unknown 1 icon-miss.txt ${settings} icon no-such-icon)
qanres_tool_test(icon.without-icon-directory 1 icon-miss.txt --resources ${ex}/resources icon ${brush})
qanres_tool_test(icon-path.guid 0 icon-path-brush.txt ${settings} icon-path Guid://${brush})
qanres_tool_test(icon-path.png-entry 1 empty-line.txt ${settings} icon-path guid://${pencil})
qanres_tool_test(image-path.ext 0 image-path.txt ${settings} image-path EXT://tools/brush.png)
qanres_tool_test(image-path.unprefixed 1 empty-line.txt ${settings} image-path tools/brush.png)

# Menu texts.
qanres_tool_test(strip-menu.mnemonic-and-accelerator 0 strip-menu-open.txt strip-menu 3 "&Open...\tCtrl+O")
qanres_tool_test(strip-menu.all 0 strip-menu-all.txt strip-menu 15 "Anti-&&alias %d%%")
qanres_tool_test(strip-menu.nothing-left 1 empty-line.txt strip-menu 2 "\tCtrl+O")

# Usage.
qanres_tool_test(help 0 "" --help)
qanres_tool_test(command-help 0 "" string --help)
qanres_tool_test(version 0 version.txt --version)
foreach(usage "no-command" "missing-key:string" "unknown-command:frobnicate|x"
              "bad-flags:strip-menu|x|y" "missing-dir:lint|/no/such/directory"
              "export-missing-dir:export|/no/such/directory"
              "export-bad-format:export|--format|mo|/"
              "import-missing-file:import|/no/such/file.po|/"
              "pseudo-missing-dir:pseudo|/no/such/directory|/no/such/output")
    string(REPLACE ":" ";" parts "${usage}")
    list(GET parts 0 name)
    list(LENGTH parts n)
    set(args)
    if(n GREATER 1)
        list(GET parts 1 args)
    endif()
    add_test(NAME qanres.usage.${name}
             COMMAND ${CMAKE_COMMAND} "-DTOOL=${tool}" "-DARGS=${args}"
                     -DEXPECT_RC=2 "-DSTDERR_MATCH=^qanres: error: " -P ${run})
endforeach()

# Checking and formatting.
qanres_tool_test(lint.examples-clean 0 lint-examples.txt lint ${ex}/resources)
qanres_tool_test(lint.faulty 1 lint-faulty.txt lint ${CMAKE_CURRENT_SOURCE_DIR}/data/faulty)
qanres_tool_test(fmt.check-examples 0 empty.txt fmt --check ${ex}/resources)
add_test(NAME qanres.fmt.round-trip
         COMMAND ${CMAKE_COMMAND} "-DTOOL=${tool}"
                 -DDATA=${CMAKE_CURRENT_SOURCE_DIR}/data "-DWORK=${CMAKE_CURRENT_BINARY_DIR}/fmt-Grüße"
                 -P ${CMAKE_CURRENT_SOURCE_DIR}/FmtRoundTrip.cmake)

# Cursors, when the example icon library could be built.
if(TARGET qanres_example_icons)
    set(library ${PROJECT_BINARY_DIR}/examples/icon-library)
    set(QANRES_TEST_EXTRA -DLIBPATH=${library})
    qanres_tool_test(cursor.found 0 cursor-pencil.txt cursor Daubery.Cursor.Pencil)
    qanres_tool_test(cursor.case-differs 1 icon-miss.txt cursor daubery.cursor.pencil)
    qanres_tool_test(cursor-table.dump 0 cursor-table-dump.txt cursor-table dump ${library}/QanIcons.dll)
    qanres_tool_test(lint.icon-library 0 lint-icon-library.txt lint ${library})
    set(QANRES_TEST_EXTRA)
    add_test(NAME qanres.cursor-table.write-round-trip
             COMMAND ${CMAKE_COMMAND} "-DTOOL=${tool}"
                     -DLIST=${CMAKE_CURRENT_SOURCE_DIR}/data/cursors.txt
                     -DWORK=${CMAKE_CURRENT_BINARY_DIR}/cursor-table
                     -DGOLDEN=${golden}/cursor-table-list.txt
                     -P ${CMAKE_CURRENT_SOURCE_DIR}/CursorTableRoundTrip.cmake)
endif()

# The translators' loop: export, import and pseudo, and real gettext catalogues.
find_program(QANRES_MSGFMT msgfmt)
find_program(QANRES_MSGUNFMT msgunfmt)
add_test(NAME qanres.translate.round-trip
         COMMAND ${CMAKE_COMMAND} "-DTOOL=${tool}"
                 -DDATA=${CMAKE_CURRENT_SOURCE_DIR}/data -DWORK=${CMAKE_CURRENT_BINARY_DIR}/translate
                 -DMSGFMT=${QANRES_MSGFMT} -P ${CMAKE_CURRENT_SOURCE_DIR}/TranslateRoundTrip.cmake)
# gettext's own programs run on the build machine only.
if(QANRES_MSGFMT AND QANRES_MSGUNFMT AND NOT CMAKE_CROSSCOMPILING)
    add_test(NAME qanres.translate.real-catalogues
             COMMAND ${CMAKE_COMMAND} -DTOOL=$<TARGET_FILE:qanres> -DMSGFMT=${QANRES_MSGFMT}
                     -DMSGUNFMT=${QANRES_MSGUNFMT} -DWORK=${CMAKE_CURRENT_BINARY_DIR}/catalogues
                     -P ${CMAKE_CURRENT_SOURCE_DIR}/RealCatalogues.cmake)
    set_tests_properties(qanres.translate.real-catalogues PROPERTIES SKIP_REGULAR_EXPRESSION
                                                                     "SKIPPED: ")
else()
    message(STATUS "qanres: msgfmt or msgunfmt not found: the real-catalogue test is left out")
endif()

# The load report: every file of the examples read; a directory with a one-line start-up
# file, a key without its id and a nested icon map names each refusal and exits 1.
set(wrong ${CMAKE_CURRENT_SOURCE_DIR}/data/report-wrong)
set(wrongSettings "--master-strings|${wrong}|--resources|${wrong}|--icons|${wrong}")
qanres_tool_test(report.examples 0 report-examples.txt ${settings} report)
qanres_tool_test(report.wrong 1 report-wrong.txt ${wrongSettings} report)
qanres_tool_test(report.wrong-json 1 report-wrong-json.txt ${wrongSettings} report --format json)
qanres_tool_test(report.bad-format 2 "" report --format yaml)
