# cmake -DNAME=VALUE... -P check_quickstart.cmake
#
# Follows docs/quickstart.md in an empty folder: runs every command as it stands there and writes the files that are to
# be written. Each program has to end with the text that the page shows.
#
#   SOURCE_DIR  this project; WORK_DIR a folder of the test's own
#   GENERATOR, CXX, CXX_FLAGS   what the programs are built with

cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/ExtractSnippets.cmake")

set(gCommands "")
set(gProgram "")
set(gBuildFile "")
set(gOutput "")

macro(lyrsdk_take_block)
    if(lWord STREQUAL "sh")
        # Each ends at its first command that fails.
        string(APPEND gCommands "${lBlock}")
    elseif(lWord STREQUAL "cpp" AND gProgram STREQUAL "")
        set(gProgram "${lBlock}")
    elseif(lWord STREQUAL "cmake" AND gBuildFile STREQUAL "")
        set(gBuildFile "${lBlock}")
    elseif(lWord STREQUAL "output" AND gOutput STREQUAL "")
        set(gOutput "${lBlock}")
    else()
        message(FATAL_ERROR "docs/quickstart.md:${lFirstLine}: this test knows nothing of the block")
    endif()
endmacro()

lyrsdk_for_each_block("${SOURCE_DIR}/docs/quickstart.md")

file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}/bin")
file(CREATE_LINK "${SOURCE_DIR}" "${WORK_DIR}/lyrsdk" SYMBOLIC)
file(WRITE "${WORK_DIR}/app/CMakeLists.txt" "${gBuildFile}")
file(WRITE "${WORK_DIR}/app/main.cpp" "${gProgram}")

# What the page calls c++ is the compiler and word size under test.
file(WRITE "${WORK_DIR}/bin/c++" "#!/bin/sh\nexec '${CXX}' ${CXX_FLAGS} \"$@\"\n")
file(CHMOD "${WORK_DIR}/bin/c++" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
set(ENV{PATH} "${WORK_DIR}/bin:$ENV{PATH}")
set(ENV{CXX} "${CXX}")
set(ENV{CXXFLAGS} "${CXX_FLAGS}")
set(ENV{CMAKE_GENERATOR} "${GENERATOR}")

execute_process(COMMAND bash -euc "${gCommands}" WORKING_DIRECTORY "${WORK_DIR}"
    RESULT_VARIABLE lResult OUTPUT_VARIABLE lPrinted ERROR_VARIABLE lErrors)
if(NOT lResult STREQUAL "0")
    message(FATAL_ERROR "${gCommands}\nended with ${lResult}\n${lPrinted}\n${lErrors}")
endif()

# Both programs, each run behind whatever its build printed.
string(REPLACE "${gOutput}" "" lRest "${lPrinted}")
string(LENGTH "${lPrinted}" lLength)
string(LENGTH "${lRest}" lRestLength)
string(LENGTH "${gOutput}" lOutputLength)
math(EXPR lTimes "(${lLength} - ${lRestLength}) / ${lOutputLength}")
if(NOT lTimes EQUAL 2)
    message(FATAL_ERROR "printed ${lTimes} times, not twice:\n${gOutput}--- of\n${lPrinted}")
endif()
