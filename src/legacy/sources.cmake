target_sources(QanResourcesObjects PRIVATE
    legacy/LegacyGuidIndex.cpp
    legacy/LegacyResourceCollection.cpp
    legacy/LegacyStringLookup.cpp
    legacy/SnapshotReaders.cpp)

# The compiled-in legacy GUID table is generated from the data file at build time, into
# the build tree, by a CMake script so that native and cross builds make it the same way.
set(_legacy_tsv ${PROJECT_SOURCE_DIR}/data/legacy_guids.tsv)
set(_legacy_table_cpp ${CMAKE_CURRENT_BINARY_DIR}/legacy/LegacyGuidTable.cpp)
add_custom_command(
    OUTPUT ${_legacy_table_cpp}
    COMMAND ${CMAKE_COMMAND} -DINPUT=${_legacy_tsv} -DOUTPUT=${_legacy_table_cpp}
            -P ${CMAKE_CURRENT_SOURCE_DIR}/legacy/GenerateLegacyGuidTable.cmake
    DEPENDS ${_legacy_tsv}
            ${CMAKE_CURRENT_SOURCE_DIR}/legacy/GenerateLegacyGuidTable.cmake
    COMMENT "Generating the legacy GUID table"
    VERBATIM)
target_sources(QanResourcesObjects PRIVATE ${_legacy_table_cpp})
