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
        ${dir}/KeyTable.cpp
        ${dir}/Lint.cpp
        ${dir}/TextFile.cpp)
    target_include_directories(qanres_tool_core PUBLIC ${dir})
    # What a file means comes from the library's own readers in its objects (the PE resource
    # reader, the icon map scanner, the cursor table reader, the UTF-8 converter).
    target_link_libraries(qanres_tool_core PUBLIC QanResourcesStatic qanres_cursor_table
                                           PRIVATE qanres_warnings)
endif()
