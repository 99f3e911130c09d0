# FmtRoundTrip.cmake: fmt on copies of the test directories. The messy directory (every
# repairable fault) must come out clean for lint, with the look-ups its author meant; the
# refused directory must stay byte for byte as it was.
# -DTOOL=path -DDATA=dir -DWORK=dir (a name beyond ASCII, so that paths pass through the
# tool's arguments and file functions intact)
include(${CMAKE_CURRENT_LIST_DIR}/ToolSteps.cmake)
# Wine takes the UTF-8 of the arguments from the locale.
set(ENV{LC_ALL} C.UTF-8)

function(expect_lookup dir key expected)
    set(rc 0)
    if(expected STREQUAL "")
        set(rc 1)
    endif()
    run(${rc} out --master-strings ${dir} --resources ${dir} string ${key})
    if(NOT out STREQUAL "${expected}\n")
        message(FATAL_ERROR "string ${key} gave '${out}', expected '${expected}'")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
file(COPY ${DATA}/messy ${DATA}/refused ${DATA}/drift DESTINATION ${WORK})
set(messy ${WORK}/messy)

# As written, the carriage returns end up in the ids: the key is found, its text is not;
# and the element on line 2 is never read.
expect_lookup(${messy} k.close "")
expect_lookup(${messy} k.empty "")
run(1 out fmt --check ${messy})
run(0 out fmt ${messy})
file(GLOB_RECURSE leftovers ${messy}/.*.qanres-*)
if(leftovers OR NOT out MATCHES "^(reformatted [^\n]+\n)+$")
    message(FATAL_ERROR "fmt printed:\n${out}\nand left behind: ${leftovers}")
endif()
run(0 out lint ${messy})
if(NOT out MATCHES "^checked [^\n]*: 0 errors, 0 warnings[^\n]*\n$")
    message(FATAL_ERROR "lint after fmt found:\n${out}")
endif()
run(0 out fmt --check ${messy})
expect_lookup(${messy} k.open "Open")
expect_lookup(${messy} k.save "Save")
expect_lookup(${messy} k.close "Close")
expect_lookup(${messy} k.empty "") # a self-closing element on line 2, meant as an empty text
run(0 out --resources ${messy} --icons ${WORK} --icon-subdir messy icon k.open)
if(NOT out MATCHES "iconPath: [^\n]*[/\\]messy[/\\]open.ico[/\\]\n")
    message(FATAL_ERROR "icon k.open after fmt: ${out}")
endif()
file(READ ${messy}/strings.xml text)
if(NOT text MATCHES "<!-- kept with its element -->\n  <s id=\"S_OPEN\">Open</s>")
    message(FATAL_ERROR "the comment did not move with its element:\n${text}")
endif()

set(refused ${WORK}/refused)
run(2 out fmt ${refused})
if(NOT lastErr MATCHES "^qanres: error: fmt refused, nothing changed: caption.csv:2:1: ")
    message(FATAL_ERROR "unexpected refusal message: ${lastErr}")
endif()
foreach(name strings.xml string.csv caption.csv)
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${DATA}/refused/${name}
                            ${refused}/${name} RESULT_VARIABLE differs)
    if(differs)
        message(FATAL_ERROR "fmt changed ${name} although it refused")
    endif()
endforeach()
file(GLOB leftovers ${refused}/.*.qanres-*)
if(leftovers)
    message(FATAL_ERROR "fmt left files behind: ${leftovers}")
endif()

# An element whose quotes the library pairs otherwise than the markup: sorting it by the
# markup's id would lose a key that is found today, so fmt refuses and writes nothing.
set(drift ${WORK}/drift)
expect_lookup(${drift} k.b "Bee")
run(2 out fmt ${drift})
if(NOT lastErr MATCHES "^qanres: error: fmt refused, nothing changed: strings.xml:4:3: [^\n]*\n$")
    message(FATAL_ERROR "unexpected refusal message: ${lastErr}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${DATA}/drift/strings.xml
                        ${drift}/strings.xml RESULT_VARIABLE differs)
if(differs)
    message(FATAL_ERROR "fmt changed strings.xml although it refused")
endif()
expect_lookup(${drift} k.b "Bee")
run(1 out lint ${drift})
if(NOT out MATCHES "strings.xml:4:3: error: string 'A' is never read")
    message(FATAL_ERROR "lint did not report the element read otherwise:\n${out}")
endif()
