# The fuzz build (QANRES_BUILD_FUZZ, clang only): every object of the build, expat's
# included, is compiled with libFuzzer's coverage hooks and the address and undefined
# behaviour sanitizers, so that the fuzzer sees and checks inside all of it; the fuzz
# targets then link the ordinary static library instead of source lists of their own.
if(QANRES_BUILD_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang" OR NOT CMAKE_C_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "QANRES_BUILD_FUZZ needs clang and clang++ "
                            "(-DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++)")
    endif()
    set(QANRES_FUZZ_INSTRUMENT -fsanitize=fuzzer-no-link,address,undefined
                               -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_compile_options(${QANRES_FUZZ_INSTRUMENT})
    # Programs and the shared library that are not fuzz targets still need the runtimes.
    add_link_options(-fsanitize=fuzzer-no-link,address,undefined)
endif()
