# What makes a build of all tests quick. The tests' own code is compiled with few optimisations, which
# takes two thirds of the time; what it tests is compiled as ever.
set(TEST_CODE_OPTIONS -O1)

# Each test program is linked with most of the libraries, and this linker does that three times as fast.
if(BUILD_TESTING)
    find_program(LLD_LINKER ld.lld)
    if(LLD_LINKER)
        add_link_options(-fuse-ld=lld)
    endif()
endif()
