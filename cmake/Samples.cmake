# Where further samples lie that tests and benchmarks can use: models in `models`, scenarios in `cases`.
# They need not be there; what needs them is skipped then, and says so.
set(MODELING_NUV0_SAMPLES
    ""
    CACHE PATH "Folder of further models and cases; where empty, the environment is asked")
if(MODELING_NUV0_SAMPLES)
    set(sample_folder "${MODELING_NUV0_SAMPLES}")
elseif(DEFINED ENV{MODELING_NUV0_SAMPLES})
    set(sample_folder "$ENV{MODELING_NUV0_SAMPLES}")
else()
    set(sample_folder "${PROJECT_BINARY_DIR}/no-samples")
endif()
