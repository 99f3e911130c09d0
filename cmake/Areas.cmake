# qanres_add_areas(): adds every subfolder of the current folder that has a
# CMakeLists.txt, so that each area (strings, legacy, icons...) keeps its tests,
# benchmarks and fuzz targets to itself.
function(qanres_add_areas)
    file(GLOB areas LIST_DIRECTORIES true ${CMAKE_CURRENT_SOURCE_DIR}/*)
    foreach(area ${areas})
        if(IS_DIRECTORY ${area} AND EXISTS ${area}/CMakeLists.txt)
            add_subdirectory(${area})
        endif()
    endforeach()
endfunction()
