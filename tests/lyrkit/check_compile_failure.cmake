# cmake -DCXX=... -DCXX_FLAGS=... -DSOURCE_DIR=... -DSNIPPET=... -DMESSAGE=... -P check_compile_failure.cmake

cmake_minimum_required(VERSION 3.25)

separate_arguments(lFlags UNIX_COMMAND "${CXX_FLAGS}")
list(APPEND lFlags -std=c++17 -fsyntax-only "-I${SOURCE_DIR}")

execute_process(COMMAND "${CXX}" ${lFlags} "${SNIPPET}" RESULT_VARIABLE lResult ERROR_VARIABLE lErrors)
if(NOT lResult EQUAL 0)
    message(FATAL_ERROR "does not compile even without REFUSED:\n${lErrors}")
endif()

execute_process(COMMAND "${CXX}" ${lFlags} -DREFUSED "${SNIPPET}" RESULT_VARIABLE lResult ERROR_VARIABLE lErrors)
if(lResult EQUAL 0)
    message(FATAL_ERROR "compiles")
endif()
string(REGEX MATCHALL " error: " lCount "${lErrors}")
list(LENGTH lCount lCount)
string(FIND "${lErrors}" "${MESSAGE}" lPlace)
if(NOT lCount EQUAL 1 OR lPlace EQUAL -1)
    message(FATAL_ERROR "${lCount} errors, expected one: ${MESSAGE}\n${lErrors}")
endif()
