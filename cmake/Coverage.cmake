# With COVERAGE, what is covered of the code is counted while the tests run (tests/coverage/coverage reads it).
# The tests' own code is not counted, see TestBuild.cmake.
option(COVERAGE "Count which lines and branches of the code run" OFF)

if(COVERAGE)
    # Counting happens in loops over pixels, too, and on several threads. Inlined too early, a line of a small
    # function would be counted once for all of its callers.
    add_compile_options(--coverage -fprofile-update=atomic -fno-early-inlining)
    add_link_options(--coverage LINKER:--wrap=_Exit)
    # The program may leave without running what writes the counts.
    add_library(exit_with_coverage STATIC tests/coverage/exitwithcoverage.c)
    target_compile_options(exit_with_coverage PRIVATE -fno-profile-arcs -fno-test-coverage)
    link_libraries(exit_with_coverage)
endif()
