# Makes a build of all tests quick. The tests' own code is compiled with few optimisations, which takes a
# third less time; the code under test is compiled as usual.
set(TEST_CODE_OPTIONS -O1)
if(COVERAGE)
    list(APPEND TEST_CODE_OPTIONS -fno-profile-arcs -fno-test-coverage)
endif()

# Each test program links most of the libraries, and this linker is three times as fast as the usual one.
if(BUILD_TESTING)
    find_program(LLD_LINKER ld.lld)
    if(LLD_LINKER)
        add_link_options(-fuse-ld=lld)
    endif()
endif()
