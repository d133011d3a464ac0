# The project version reaches the code through one generated header; target lumabroom_version exposes it.
configure_file(${PROJECT_SOURCE_DIR}/packaging/LumabroomVersion.h.in
    ${CMAKE_BINARY_DIR}/generated/LumabroomVersion.h @ONLY)
add_library(lumabroom_version INTERFACE)
target_include_directories(lumabroom_version INTERFACE ${CMAKE_BINARY_DIR}/generated)
