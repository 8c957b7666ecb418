# lyrsdk_extract_snippets(PAGE FOLDER PROGRAMS)
#
# Writes the C++ snippets of a page into FOLDER as programs, and beside each the text that the page says it prints.
# PROGRAMS is set to their names: NAME.cpp and NAME.out are there for each.
#
# The fenced blocks of a page, by the word behind the fence:
#
#   cpp             a program of its own when it has a main, else the body of a function; all bodies of a page are one
#                   program, which calls them in order and says at which line of the page each begins
#   cpp continued   goes on with the body before it, in the same function
#   output          what the snippet in front of it prints; without one it prints nothing
#   text            a drawing
#   sh, cmake       only on the page of which check_quickstart.cmake runs every block
#
# Any other fence is an error: what is not run cannot be shown.

set(LYRSDK_SNIPPET_PRELUDE [=[
#include <array>
#include <cstdio>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "lyrfilesdk/lyrsdk.h"

using namespace lyrsdk;

]=])

# Writes a file unless it holds the text already, so that nothing is built again in vain.
function(lyrsdk_write_if_changed pFile pText)
    set(lOld "")
    if(EXISTS "${pFile}")
        file(READ "${pFile}" lOld)
    endif()
    if(NOT EXISTS "${pFile}" OR NOT lOld STREQUAL pText)
        file(WRITE "${pFile}" "${pText}")
    endif()
endfunction()

# Calls lyrsdk_take_block for each fenced block of the page, with lWord, lBlock and lFirstLine set. No arguments: those
# of a macro would be evaluated once more, backslashes included.
macro(lyrsdk_for_each_block pPage)
    file(READ "${pPage}" lRest)
    set(lLineNumber 0)
    set(lIsInside FALSE)
    while(NOT lRest STREQUAL "")
        string(FIND "${lRest}" "\n" lEnd)
        if(lEnd EQUAL -1)
            message(FATAL_ERROR "${pPage}: the last line does not end")
        endif()
        string(SUBSTRING "${lRest}" 0 ${lEnd} lLine)
        math(EXPR lEnd "${lEnd} + 1")
        string(SUBSTRING "${lRest}" ${lEnd} -1 lRest)
        math(EXPR lLineNumber "${lLineNumber} + 1")
        if(NOT lIsInside AND lLine MATCHES "^```(.*)$")
            set(lWord "${CMAKE_MATCH_1}")
            set(lBlock "")
            set(lIsInside TRUE)
            math(EXPR lFirstLine "${lLineNumber} + 1")
        elseif(lIsInside AND lLine STREQUAL "```")
            set(lIsInside FALSE)
            lyrsdk_take_block()
        elseif(lIsInside)
            string(APPEND lBlock "${lLine}\n")
        endif()
    endwhile()
    if(lIsInside)
        message(FATAL_ERROR "${pPage}: the block at line ${lFirstLine} does not end")
    endif()
endmacro()

# One block. Works on the variables of lyrsdk_extract_snippets.
macro(lyrsdk_take_block)
    if(lWord STREQUAL "cpp" AND lBlock MATCHES "int main\\(")
        lyrsdk_finish_program()
        set(lProgram "${lName}_line${lFirstLine}")
        lyrsdk_write_if_changed("${pFolder}/${lProgram}.cpp" "#line ${lFirstLine} \"${lPage}\"\n${lBlock}")
        set(lProgramOutput "")
    elseif(lWord MATCHES "^cpp( continued)?$")
        lyrsdk_finish_program()
        if(lWord STREQUAL "cpp")
            if(NOT lBodies STREQUAL "")
                string(APPEND lBodies "}\n\n")
            endif()
            string(APPEND lBodies "void Line${lFirstLine}() {\n")
            string(APPEND lCalls "    Line${lFirstLine}();\n")
        elseif(lBodies STREQUAL "")
            message(FATAL_ERROR "${lPage}:${lFirstLine}: there is nothing to continue")
        endif()
        # Not indented, like the snippets: what stands farther in than a loop in front of it looks like its body.
        string(APPEND lBodies "std::printf(\"[line ${lFirstLine}]\\n\");\n")
        string(APPEND lBodies "#line ${lFirstLine} \"${lPage}\"\n${lBlock}")
        string(APPEND lBodyOutput "[line ${lFirstLine}]\n")
    elseif(lWord STREQUAL "output")
        if(NOT lProgram STREQUAL "")
            string(APPEND lProgramOutput "${lBlock}")
        elseif(NOT lBodies STREQUAL "")
            string(APPEND lBodyOutput "${lBlock}")
        else()
            message(FATAL_ERROR "${lPage}:${lFirstLine}: nothing prints this")
        endif()
    elseif(lWord MATCHES "^(sh|cmake)$" AND lName STREQUAL "quickstart")
        # Run by a test of its own.
    elseif(NOT lWord STREQUAL "text")
        message(FATAL_ERROR "${lPage}:${lFirstLine}: no block \"${lWord}\" is known")
    endif()
endmacro()

macro(lyrsdk_finish_program)
    if(NOT lProgram STREQUAL "")
        lyrsdk_write_if_changed("${pFolder}/${lProgram}.out" "${lProgramOutput}")
        list(APPEND lPrograms "${lProgram}")
        set(lProgram "")
    endif()
endmacro()

function(lyrsdk_extract_snippets pPage pFolder pPrograms)
    cmake_path(GET pPage STEM lName)
    cmake_path(GET pPage FILENAME lPage)
    string(PREPEND lPage "docs/")
    set(lPrograms "")
    set(lProgram "")
    set(lBodies "")
    set(lBodyOutput "")
    set(lCalls "")
    lyrsdk_for_each_block("${pPage}")
    lyrsdk_finish_program()
    if(NOT lBodies STREQUAL "")
        lyrsdk_write_if_changed("${pFolder}/${lName}_bodies.cpp"
            "${LYRSDK_SNIPPET_PRELUDE}namespace {\n\n${lBodies}}\n\n}  // namespace\n\nint main() {\n${lCalls}}\n")
        lyrsdk_write_if_changed("${pFolder}/${lName}_bodies.out" "${lBodyOutput}")
        list(APPEND lPrograms "${lName}_bodies")
    endif()
    set(${pPrograms} "${lPrograms}" PARENT_SCOPE)
endfunction()
