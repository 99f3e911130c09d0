# Placeholder: the Windows build of expat from its source tarball.
if(NOT TARGET EXPAT::EXPAT)
    add_library(EXPAT::EXPAT INTERFACE IMPORTED)
endif()
