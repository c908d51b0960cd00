# Every target of this project links house_warnings; generated code does not.
add_library(house_warnings INTERFACE)
target_compile_options(house_warnings INTERFACE
    -Wall -Wextra -Wconversion -Wshadow -Werror)
target_compile_definitions(house_warnings INTERFACE QT_DEPRECATED_WARNINGS)
target_include_directories(house_warnings INTERFACE ${CMAKE_SOURCE_DIR})
