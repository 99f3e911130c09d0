# expat, the SAX parser that reads the icon map. Linux uses the system's; the Windows
# build compiles expat's upstream source (see cmake/ExpatFromSource.cmake).
if(WIN32)
    include(cmake/ExpatFromSource.cmake)
else()
    find_package(EXPAT REQUIRED)
endif()
