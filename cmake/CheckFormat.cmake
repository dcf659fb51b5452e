# Fails when a C++ file of the project differs from what clang-format makes of it.
file(GLOB_RECURSE files
    ${SOURCE_DIR}/src/*.cpp ${SOURCE_DIR}/src/*.h
    ${SOURCE_DIR}/tests/*.cpp ${SOURCE_DIR}/tests/*.h)
execute_process(
    COMMAND ${CLANG_FORMAT} --dry-run --Werror ${files}
    RESULT_VARIABLE status
    ERROR_VARIABLE complaints)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "Unformatted files (run clang-format -i on them):\n${complaints}")
endif()
list(LENGTH files count)
message(STATUS "${count} files formatted as .clang-format asks")
