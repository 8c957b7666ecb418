# The gdb pretty printers, as used from the build folder; LyrSdkInstall.cmake installs them.

# What gdb loads to get the printers of the source folder.
set(LYRSDK_GDB_LOADER "${PROJECT_BINARY_DIR}/lyrsdk-gdb.py")
set(LYRSDK_GDB_MODULE_DIR "${PROJECT_SOURCE_DIR}/tools/gdb")
configure_file("${PROJECT_SOURCE_DIR}/tools/gdb/lyrsdk-gdb.py.in" "${LYRSDK_GDB_LOADER}" @ONLY)
unset(LYRSDK_GDB_MODULE_DIR)

# Puts the loader beside a shared library, where gdb looks for it.
function(lyrsdk_gdb_printers_beside pTarget)
    add_custom_command(TARGET ${pTarget} POST_BUILD
        COMMAND "${CMAKE_COMMAND}" -E copy "${LYRSDK_GDB_LOADER}" "$<TARGET_FILE:${pTarget}>-gdb.py"
        VERBATIM)
endfunction()
