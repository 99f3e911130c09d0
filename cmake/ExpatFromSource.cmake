# expat for the Windows build, compiled from the upstream source that Debian ships (there
# is no mingw package of it). scripts/fetch-expat-source.sh puts the tarball into
# build/_deps/; this extracts it once into the build tree and builds a static library,
# exposed as EXPAT::EXPAT like the system package on Linux.
set(QANRES_EXPAT_TARBALL "${PROJECT_SOURCE_DIR}/build/_deps/expat_2.5.0.orig.tar.gz"
    CACHE FILEPATH "expat's upstream source tarball for builds without a system expat")

if(NOT TARGET EXPAT::EXPAT)
    if(NOT EXISTS "${QANRES_EXPAT_TARBALL}")
        message(FATAL_ERROR "expat source not found at ${QANRES_EXPAT_TARBALL}: run "
                            "scripts/fetch-expat-source.sh (as root) first")
    endif()

    set(_qanres_expat_root "${PROJECT_BINARY_DIR}/_deps/expat-src")
    set(_qanres_expat_source "${_qanres_expat_root}/libexpat-R_2_5_0/expat")
    if(NOT EXISTS "${_qanres_expat_source}/CMakeLists.txt")
        file(ARCHIVE_EXTRACT INPUT "${QANRES_EXPAT_TARBALL}" DESTINATION "${_qanres_expat_root}")
    endif()

    # Only the library: static, without its tools, examples, tests, docs or install rules.
    set(EXPAT_SHARED_LIBS OFF CACHE BOOL "" FORCE)
    set(EXPAT_BUILD_TOOLS OFF CACHE BOOL "" FORCE)
    set(EXPAT_BUILD_EXAMPLES OFF CACHE BOOL "" FORCE)
    set(EXPAT_BUILD_TESTS OFF CACHE BOOL "" FORCE)
    set(EXPAT_BUILD_DOCS OFF CACHE BOOL "" FORCE)
    set(EXPAT_BUILD_FUZZERS OFF CACHE BOOL "" FORCE)
    set(EXPAT_BUILD_PKGCONFIG OFF CACHE BOOL "" FORCE)
    set(EXPAT_ENABLE_INSTALL OFF CACHE BOOL "" FORCE)
    add_subdirectory("${_qanres_expat_source}" "${PROJECT_BINARY_DIR}/_deps/expat-build"
                     EXCLUDE_FROM_ALL)

    # Users of a static expat must not expect its functions to be imported from a DLL.
    target_compile_definitions(expat PUBLIC XML_STATIC)
    set_target_properties(expat PROPERTIES POSITION_INDEPENDENT_CODE ON)
    add_library(EXPAT::EXPAT ALIAS expat)
endif()
