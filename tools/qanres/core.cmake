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
        ${dir}/Json.cpp
        ${dir}/Lint.cpp
        ${dir}/Product.cpp
        ${dir}/Stats.cpp
        ${dir}/TextFeatures.cpp
        ${dir}/TextFile.cpp)
    target_include_directories(qanres_tool_core PUBLIC ${dir})
    # Only the PE resource reader and the UTF-8 converter come from the library's objects.
    target_link_libraries(qanres_tool_core PUBLIC QanResourcesStatic qanres_cursor_table
                                           PRIVATE qanres_warnings)
endif()
