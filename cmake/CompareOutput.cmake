# cmake -DPROGRAM=... [-DARGUMENTS=...] -DEXPECTED=... -P CompareOutput.cmake
#
# Runs a program and fails unless it succeeds, says nothing on stderr and prints the expected text.

execute_process(COMMAND "${PROGRAM}" ${ARGUMENTS} RESULT_VARIABLE lResult OUTPUT_VARIABLE lOutput ERROR_VARIABLE lErrors)
file(READ "${EXPECTED}" lExpected)
if(NOT lResult STREQUAL "0" OR NOT lErrors STREQUAL "" OR NOT lOutput STREQUAL lExpected)
    message(FATAL_ERROR
        "${PROGRAM} ended with ${lResult}\n--- stderr\n${lErrors}--- printed\n${lOutput}--- expected\n${lExpected}")
endif()
