# cmake -DNAME=VALUE... -P check_install.cmake
#
# Installs the library, moves the installed tree elsewhere, holds its files against the manifest, has gdb load its
# printers, and builds programs against it with find_package and with pkg-config.
#
#   KIND        static or shared
#   BUILD_DIR   a build of the library of that kind; without it, the library is built as a part of a host project
#   TOOLS       whether that build has the tools
#   CONFIG      build type
#   SOURCE_DIR  this project; WORK_DIR a folder of the test's own
#   GENERATOR, MAKE_PROGRAM, CXX, CXX_FLAGS   what the programs are built with

cmake_minimum_required(VERSION 3.25)

# Runs a command, and ends the test with all it printed when it fails.
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE lResult OUTPUT_VARIABLE lOutput ERROR_VARIABLE lOutput)
    if(NOT lResult STREQUAL "0")
        list(JOIN ARGV " " lCommand)
        message(FATAL_ERROR "${lCommand}\nended with ${lResult}\n${lOutput}")
    endif()
    string(STRIP "${lOutput}" lOutput)
    set(gOutput "${lOutput}" PARENT_SCOPE)
endfunction()

function(configure_and_build pSource pBuild)
    run("${CMAKE_COMMAND}" -S "${pSource}" -B "${pBuild}" -G "${GENERATOR}"
        "-DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM}" "-DCMAKE_BUILD_TYPE=${CONFIG}"
        "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" ${ARGN})
    run("${CMAKE_COMMAND}" --build "${pBuild}")
endfunction()

# Installs the library into WORK_DIR/sdk, by way of another folder, so that no path of the first can be left in it.
function(install_library)
    set(lBuild "${BUILD_DIR}")
    if(NOT lBuild)
        set(lBuild "${WORK_DIR}/embed")
        set(lShared OFF)
        if(KIND STREQUAL "shared")
            set(lShared ON)
        endif()
        configure_and_build("${SOURCE_DIR}/tests/install/embed" "${lBuild}"
            "-DLYRSDK_SOURCE_DIR=${SOURCE_DIR}" -DBUILD_SHARED_LIBS=${lShared})
        run("${lBuild}/embed")
    endif()
    run("${CMAKE_COMMAND}" --install "${lBuild}" --prefix "${WORK_DIR}/installed")
    file(RENAME "${WORK_DIR}/installed" "${WORK_DIR}/sdk")
endfunction()

# The library folder's name differs between systems, and one file is named after the build type.
function(check_manifest)
    file(STRINGS "${SOURCE_DIR}/tests/install/manifest.txt" lLines REGEX "^[^#]")
    set(lExpected)
    set(lKinds "any|${KIND}")
    if(TOOLS)
        string(APPEND lKinds "|tools")
    endif()
    foreach(lLine IN LISTS lLines)
        if(lLine MATCHES "^(${lKinds}) +(.+)$")
            list(APPEND lExpected "${CMAKE_MATCH_2}")
        endif()
    endforeach()
    file(GLOB_RECURSE lFound RELATIVE "${WORK_DIR}/sdk" "${WORK_DIR}/sdk/*")
    string(TOLOWER "${CONFIG}" lConfig)
    list(TRANSFORM lFound REPLACE "^lib[^/]*/" "<lib>/")
    list(TRANSFORM lFound REPLACE "-${lConfig}\\.cmake$" "-<config>.cmake")
    list(SORT lExpected)
    list(SORT lFound)
    if(NOT lFound STREQUAL lExpected)
        set(lExtra ${lFound})
        list(REMOVE_ITEM lExtra ${lExpected})
        list(REMOVE_ITEM lExpected ${lFound})
        message(FATAL_ERROR "tests/install/manifest.txt\nlacks: ${lExtra}\nnames, but not installed: ${lExpected}")
    endif()
endfunction()

# The shared library carries its version, and nothing of it is visible that is not the library's own.
function(check_shared_library pLibDir)
    run(readelf -d "${pLibDir}/liblyrsdk.so")
    if(NOT gOutput MATCHES "SONAME[^\n]*\\[liblyrsdk\\.so\\.1\\]")
        message(FATAL_ERROR "no versioned soname:\n${gOutput}")
    endif()
    run(nm -D --defined-only "${pLibDir}/liblyrsdk.so")
    string(REPLACE "\n" ";" lSymbols "${gOutput}")
    list(FILTER lSymbols EXCLUDE REGEX "6lyrsdk")
    if(lSymbols)
        message(FATAL_ERROR "visible, but not of the library: ${lSymbols}")
    endif()
endfunction()

# gdb loads the printers with the shared library, where it is installed, and by name.
function(check_gdb_printers pLibDir)
    set(lGdb gdb -nx -batch -iex "set debuginfod enabled off" -iex "set auto-load safe-path ${WORK_DIR}/sdk")
    execute_process(COMMAND ${lGdb} -ex "python print('gdb and ' + 'Python')" OUTPUT_VARIABLE lOutput ERROR_QUIET)
    if(NOT lOutput MATCHES "gdb and Python")
        message("there is no gdb with Python here: its printers are not tried")
        return()
    endif()
    if(KIND STREQUAL "shared")
        run(${lGdb} -ex "info pretty-printer .*liblyrsdk lyrsdk" "${pLibDir}/liblyrsdk.so")
        if(NOT gOutput MATCHES "KLyrPropertyHandle")
            message(FATAL_ERROR "gdb has not loaded the printers with the library:\n${gOutput}")
        endif()
    endif()
    run(${lGdb} -ex "source ${WORK_DIR}/sdk/share/lyrsdk/gdb/lyrsdk-gdb.py" -ex "info pretty-printer global lyrsdk")
    if(NOT gOutput MATCHES "KLyrPropertyHandle")
        message(FATAL_ERROR "gdb has not loaded the printers by name:\n${gOutput}")
    endif()
    # Loading leaves nothing behind.
    check_manifest()
endfunction()

function(check_find_package)
    configure_and_build("${SOURCE_DIR}/tests/install/consumer" "${WORK_DIR}/consumer"
        "-DCMAKE_PREFIX_PATH=${WORK_DIR}/sdk" -DKIND=${KIND} -DCMAKE_EXE_LINKER_FLAGS=-Wl,--fatal-warnings)
    run("${WORK_DIR}/consumer/consumer")
    run("${WORK_DIR}/consumer/replace")
endfunction()

function(check_pkg_config pLibDir)
    set(ENV{PKG_CONFIG_LIBDIR} "${pLibDir}/pkgconfig")
    run(pkg-config --modversion lyrsdk)
    if(NOT gOutput STREQUAL "${VERSION}")
        message(FATAL_ERROR "pkg-config gives the version ${gOutput}, not ${VERSION}")
    endif()
    run(pkg-config --cflags --libs lyrsdk)
    separate_arguments(lPackage UNIX_COMMAND "${gOutput}")
    separate_arguments(lFlags UNIX_COMMAND "${CXX_FLAGS}")
    run("${CXX}" ${lFlags} -std=c++17 "${SOURCE_DIR}/tests/install/consumer/main.cpp"
        -o "${WORK_DIR}/by_pkg_config" ${lPackage} "-Wl,-rpath,${pLibDir}")
    run("${WORK_DIR}/by_pkg_config")
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")
install_library()
check_manifest()
file(GLOB lLibDir "${WORK_DIR}/sdk/lib*")
if(KIND STREQUAL "shared")
    check_shared_library("${lLibDir}")
endif()
check_gdb_printers("${lLibDir}")
check_find_package()
check_pkg_config("${lLibDir}")
