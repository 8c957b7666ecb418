# cmake -DSOURCE_DIR=... -P check_sources.cmake
#
# What the compiler does not see: which layer includes which, what the library takes from the standard library, the size
# of the files, and that the README shows the program that is tested.

cmake_minimum_required(VERSION 3.25)

set(gFaults)

# Standard headers whose classes allocate without asking the memory hook.
string(CONCAT lAllocating
    "(any|deque|filesystem|forward_list|fstream|functional|iostream|istream|list|locale|map|memory|ostream|queue|regex|set"
    "|sstream|stack|string|unordered_map|unordered_set|vector)")

# The lines of a file that match pRegex, without the brackets and semicolons that would upset a list.
function(matching_lines pFile pRegex pResult)
    file(STRINGS "${pFile}" lLines REGEX "${pRegex}")
    set(${pResult} "${lLines}" PARENT_SCOPE)
endfunction()

function(fault)
    string(CONCAT lText ${ARGV})
    set(gFaults "${gFaults}\n${lText}" PARENT_SCOPE)
endfunction()

# check_layer(FOLDER SUBFOLDER...): the sources of FOLDER include only those of the given folders, all below lyrfilesdk.
macro(check_layer pFolder)
    string(REPLACE ";" "|" lAllowed "${ARGN}")
    file(GLOB lFiles "${SOURCE_DIR}/lyrfilesdk/${pFolder}/*.h" "${SOURCE_DIR}/lyrfilesdk/${pFolder}/*.cpp")
    if(NOT lFiles)
        fault("no sources in lyrfilesdk/${pFolder}")
    endif()
    foreach(lFile IN LISTS lFiles)
        matching_lines("${lFile}" "^ *# *include \"" lIncludes)
        foreach(lInclude IN LISTS lIncludes)
            if(NOT lInclude MATCHES "\"lyrfilesdk/(${lAllowed})/[a-z]+\\.h\"")
                fault("${lFile}: a layer must not include ${lInclude}")
            endif()
        endforeach()
        matching_lines("${lFile}" "^ *# *include <" lIncludes)
        foreach(lInclude IN LISTS lIncludes)
            # A stream of the caller's is only written to.
            if(lInclude MATCHES "<${lAllocating}>" AND NOT lFile MATCHES "/lyrkit/klyrdump[a-z]*[.]cpp$")
                fault("${lFile}: allocates behind the memory hook: ${lInclude}")
            endif()
        endforeach()
    endforeach()
endmacro()

check_layer(components/kbaselib/klib components/kbaselib/klib)
check_layer(klyrplugins components/kbaselib/klib klyrplugins)
check_layer(lyrcore components/kbaselib/klib klyrplugins lyrcore)
check_layer(lyrkit components/kbaselib/klib klyrplugins lyrcore lyrkit)

foreach(lFolder IN ITEMS lyrfilesdk tests tools examples benchmarks)
    file(GLOB_RECURSE lFiles "${SOURCE_DIR}/${lFolder}/*.h" "${SOURCE_DIR}/${lFolder}/*.cpp")
    foreach(lFile IN LISTS lFiles)
        file(READ "${lFile}" lText)
        string(REGEX REPLACE "[^\n]+" "" lNewlines "${lText}")
        string(LENGTH "${lNewlines}" lCount)
        if(lCount GREATER 600)
            fault("${lFile}: ${lCount} lines, more than 600")
        endif()
        if(lFile MATCHES "\\.h$" AND NOT lText MATCHES "^#pragma once\n")
            fault("${lFile}: does not begin with #pragma once")
        endif()
    endforeach()
endforeach()

file(READ "${SOURCE_DIR}/README.md" lReadme)
file(READ "${SOURCE_DIR}/examples/quickstart.cpp" lExample)
string(FIND "${lReadme}" "```cpp\n${lExample}```" lPlace)
if(lPlace EQUAL -1)
    fault("README.md does not show examples/quickstart.cpp")
endif()

if(gFaults)
    message(FATAL_ERROR "${gFaults}")
endif()
