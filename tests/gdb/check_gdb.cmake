# cmake -DNAME=VALUE... -P check_gdb.cmake
#
# Has gdb make a core of the scene, and has another gdb compare what it shows of the core with what it should show.
#
#   KIND        shared: gdb finds the printers beside the library; static: LOADER is loaded by name
#   PROGRAM     the program that makes the scene
#   LOADER      what loads the printers
#   SOURCE_DIR  this project; WORK_DIR a folder of the test's own

cmake_minimum_required(VERSION 3.25)

# Nothing of the user's settings, and no debug info from elsewhere.
set(gGdb gdb -nx -batch
    -iex "set debuginfod enabled off" -iex "set debug-file-directory ${WORK_DIR}" -iex "set auto-load safe-path /")

# Runs gdb; its status in gStatus, and all it printed in gOutput.
macro(run_gdb)
    execute_process(COMMAND ${gGdb} ${ARGN} RESULT_VARIABLE gStatus OUTPUT_VARIABLE gOutput ERROR_VARIABLE gErrors)
    string(APPEND gOutput "${gErrors}")
endmacro()

run_gdb(-ex "python print('gdb and ' + 'Python')")
if(NOT gOutput MATCHES "gdb and Python")
    message("SKIPPED: there is no gdb with Python here: ${gStatus}\n${gOutput}")
    return()
endif()

file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")
set(lCore "${WORK_DIR}/core")
run_gdb(-ex "set disable-randomization off" -ex run -ex "generate-core-file ${lCore}" "${PROGRAM}")
if(NOT EXISTS "${lCore}")
    message(FATAL_ERROR "gdb made no core of ${PROGRAM}:\n${gOutput}")
endif()

# check_core(KNOWS_LIBRARY OPTION...): a gdb with these options looks at the core.
function(check_core pKnowsLibrary)
    run_gdb(${ARGN}
        -ex "python SOURCE_DIR, WORK_DIR, KNOWS_LIBRARY = r'${SOURCE_DIR}', r'${WORK_DIR}', ${pKnowsLibrary}"
        -x "${SOURCE_DIR}/tests/gdb/check_core.py"
        "${PROGRAM}" "${lCore}")
    if(NOT gStatus STREQUAL "0" OR NOT gOutput MATCHES "all of the core is shown as it should be")
        message("${gOutput}")
        message(FATAL_ERROR "gdb ended with ${gStatus}; its answers are in ${WORK_DIR}")
    endif()
endfunction()

# Whatever the user's terminal is.
set(ENV{LC_ALL} C.UTF-8)
if(KIND STREQUAL "static")
    check_core(True -ex "source ${LOADER}")
    # As on a terminal that knows ASCII alone.
    set(ENV{LC_ALL} C)
    check_core(True -ex "source ${LOADER}")
else()
    check_core(True)
    # As if the library had been built without debug info.
    check_core(False -iex "set auto-solib-add off" -ex "source ${LOADER}")
endif()
