# cmake -DPROGRAMS=PROGRAM=EXPECTED[;...] -P check_page.cmake
#
# Runs the programs of one page and compares what each prints.

cmake_minimum_required(VERSION 3.25)

foreach(lPair IN LISTS PROGRAMS)
    string(REGEX MATCH "^([^=]*)=(.*)$" lPair "${lPair}")
    set(PROGRAM "${CMAKE_MATCH_1}")
    set(EXPECTED "${CMAKE_MATCH_2}")
    include("${CMAKE_CURRENT_LIST_DIR}/../../cmake/CompareOutput.cmake")
endforeach()
