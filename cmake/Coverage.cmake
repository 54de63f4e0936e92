# The target coverage-report, in builds with coverage counters: lines of model/ and traversal/ that
# the tests reached. Run the tests first.
if(CMAKE_CXX_FLAGS MATCHES "--coverage")
    find_program(MODELING_NUV0_GCOVR gcovr)
    mark_as_advanced(MODELING_NUV0_GCOVR)
    if(MODELING_NUV0_GCOVR)
        add_custom_target(
            coverage-report
            COMMAND
                ${MODELING_NUV0_GCOVR} --root "${PROJECT_SOURCE_DIR}" --filter
                "${PROJECT_SOURCE_DIR}/model/" --filter "${PROJECT_SOURCE_DIR}/traversal/"
                --exclude-throw-branches --html-details coverage.html --print-summary .
            WORKING_DIRECTORY "${PROJECT_BINARY_DIR}"
            COMMENT "Summing coverage up; details in ${PROJECT_BINARY_DIR}/coverage.html"
            VERBATIM)
    endif()
endif()
