# expat, the SAX parser that reads the icon map. Linux uses the system's; the Windows
# build compiles expat's upstream source (see cmake/ExpatFromSource.cmake), and so does the
# fuzz build, so that expat is instrumented like the library and the fuzzer's coverage
# reaches into the parser the icon map goes through.
if(WIN32 OR QANRES_BUILD_FUZZ)
    include(cmake/ExpatFromSource.cmake)
else()
    find_package(EXPAT REQUIRED)
endif()
