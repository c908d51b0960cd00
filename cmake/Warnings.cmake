# Every target of this project links house_warnings; generated code does not.
add_library(house_warnings INTERFACE)
target_compile_options(house_warnings INTERFACE
    -Wall -Wextra -Wconversion -Wshadow -Werror)
# In a group of sources, what a source keeps to itself looks to this warning as if a header had it.
if(CMAKE_UNITY_BUILD)
    target_compile_options(house_warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endif()
target_compile_definitions(house_warnings INTERFACE QT_DEPRECATED_WARNINGS)
target_include_directories(house_warnings INTERFACE ${CMAKE_SOURCE_DIR})
