# The tool's checker, formatter and cursor-table code as a library of its own, so that the
# unit tests can link it even in builds that leave the tool out (QANRES_BUILD_TOOLS OFF).
if(NOT TARGET qanres_tool_core)
    set(dir ${CMAKE_CURRENT_LIST_DIR})
    add_library(qanres_tool_core STATIC
        ${dir}/Bytes.cpp
        ${dir}/CursorTable.cpp
        ${dir}/Diagnostics.cpp
        ${dir}/Escape.cpp
        ${dir}/Files.cpp
        ${dir}/Format.cpp
        ${dir}/IconMap.cpp
        ${dir}/Import.cpp
        ${dir}/KeyTable.cpp
        ${dir}/Json.cpp
        ${dir}/Lint.cpp
        ${dir}/LintProduct.cpp
        ${dir}/Placeholders.cpp
        ${dir}/Po.cpp
        ${dir}/Pseudo.cpp
        ${dir}/Stats.cpp
        ${dir}/StoredText.cpp
        ${dir}/StringDirectory.cpp
        ${dir}/StringFileWriter.cpp
        ${dir}/TextFeatures.cpp
        ${dir}/TextFile.cpp
        ${dir}/Translate.cpp
        ${dir}/Xliff.cpp)
    target_include_directories(qanres_tool_core PUBLIC ${dir})
    # What a file means comes from the library's own readers in its objects (the string
    # tables' scanners and decoder, the icon map scanner, the cursor table reader, the PE
    # resource reader, the UTF-8 converter); expat reads XLIFF.
    target_link_libraries(qanres_tool_core PUBLIC QanResourcesStatic qanres_cursor_table
                                           PRIVATE EXPAT::EXPAT qanres_warnings)
endif()
