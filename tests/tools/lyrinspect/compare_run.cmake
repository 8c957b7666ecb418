# Runs the command behind "--" and compares its exit status with STATUS, its output with EXPECTED.out and its error
# stream with EXPECTED.err. What it wrote stays in ACTUAL.out and ACTUAL.err.

set(lCommand)
set(lBehind FALSE)
math(EXPR lLast "${CMAKE_ARGC} - 1")
foreach(i RANGE ${lLast})
    if(lBehind)
        list(APPEND lCommand "${CMAKE_ARGV${i}}")
    elseif(CMAKE_ARGV${i} STREQUAL "--")
        set(lBehind TRUE)
    endif()
endforeach()

execute_process(COMMAND ${lCommand}
    RESULT_VARIABLE lStatus
    OUTPUT_FILE "${ACTUAL}.out"
    ERROR_FILE "${ACTUAL}.err")
set(lFailed FALSE)
if(NOT lStatus STREQUAL STATUS)
    message(SEND_ERROR "exit status ${lStatus}, expected ${STATUS}")
    set(lFailed TRUE)
endif()
foreach(lStream IN ITEMS out err)
    if(DEFINED ENV{LYRINSPECT_UPDATE})
        configure_file("${ACTUAL}.${lStream}" "${EXPECTED}.${lStream}" COPYONLY)
    endif()
    execute_process(COMMAND diff -u "${EXPECTED}.${lStream}" "${ACTUAL}.${lStream}" RESULT_VARIABLE lDiffers)
    if(lDiffers)
        set(lFailed TRUE)
    endif()
endforeach()
if(lFailed)
    message(FATAL_ERROR "not as expected")
endif()
