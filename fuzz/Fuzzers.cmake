# Included at the end of the project's project() call (CMAKE_PROJECT_INCLUDE, set by fuzz/run), so
# that the fuzzers are built against the very library the program uses, with the same options. The
# whole build is compiled with -fsanitize=fuzzer-no-link,address,undefined; only the fuzzers link
# libFuzzer's main. They are defined once the whole project is.
if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "The fuzzers need clang's libFuzzer: build them with fuzz/run")
endif()

set(LUMABROOM_FUZZ_DIR ${CMAKE_CURRENT_LIST_DIR})

# One fuzzer per parser of outside text, named after its source file.
function(lumabroom_add_fuzzers)
    file(GLOB sources CONFIGURE_DEPENDS ${LUMABROOM_FUZZ_DIR}/*.cpp)
    add_custom_target(fuzzers)
    foreach(source ${sources})
        get_filename_component(name ${source} NAME_WE)
        add_executable(fuzz_${name} ${source})
        target_link_libraries(fuzz_${name} PRIVATE CleanerCore nlohmann_json::nlohmann_json lumabroom_warnings)
        target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
        add_dependencies(fuzzers fuzz_${name})
    endforeach()
endfunction()
cmake_language(DEFER CALL lumabroom_add_fuzzers)
