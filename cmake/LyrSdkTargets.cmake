# How this project's own targets are compiled.

include(CheckCXXSourceCompiles)

check_cxx_source_compiles("
#ifndef __i386__
#error not 32-bit x86
#endif
int main() { return 0; }
" LYRSDK_IS_X86_32)

# The x87 unit keeps more digits than a double has, and how many survive depends on the optimiser. SSE2 arithmetic gives
# 32-bit hosts the results of 64-bit ones. The flags are part of the interface because headers compute as well; they do
# not change how values are passed between functions.
set(LYRSDK_ARITHMETIC_FLAGS)
if(LYRSDK_IS_X86_32)
    set(LYRSDK_ARITHMETIC_FLAGS -msse2 -mfpmath=sse)
endif()

# Language level, visibility, arithmetic and warnings for a target that is written here.
function(lyrsdk_own_target pTarget)
    set_target_properties(${pTarget} PROPERTIES
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_features(${pTarget} PRIVATE cxx_std_17)
    # A fused multiply-add rounds once where the sources round twice.
    target_compile_options(${pTarget} PRIVATE
        -ffp-contract=off ${LYRSDK_ARITHMETIC_FLAGS}
        -Wall -Wextra -Wconversion -Wshadow -Wpedantic
        $<$<BOOL:${LYRSDK_WERROR}>:-Werror>)
endfunction()

# lyrsdk_add_layer(NAME [LINKS layer...] SOURCES file... HEADERS file...)
#
# One layer of the library: an object target lyrsdk_NAME that links the layers it may include and no other, and whose
# objects and public headers become part of the library.
function(lyrsdk_add_layer pName)
    cmake_parse_arguments(PARSE_ARGV 1 l "" "" "LINKS;SOURCES;HEADERS")
    set(lTarget lyrsdk_${pName})
    file(GLOB lUnlisted CONFIGURE_DEPENDS RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" *.cpp)
    list(REMOVE_ITEM lUnlisted ${l_SOURCES})
    if(lUnlisted)
        message(FATAL_ERROR "Sources that ${CMAKE_CURRENT_SOURCE_DIR}/CMakeLists.txt does not list: ${lUnlisted}")
    endif()
    add_library(${lTarget} OBJECT ${l_SOURCES})
    lyrsdk_own_target(${lTarget})
    target_include_directories(${lTarget} PUBLIC "${PROJECT_SOURCE_DIR}")
    foreach(lLayer IN LISTS l_LINKS)
        target_link_libraries(${lTarget} PUBLIC lyrsdk_${lLayer})
    endforeach()
    if(BUILD_SHARED_LIBS)
        set_target_properties(${lTarget} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    endif()
    target_sources(lyrsdk
        PRIVATE $<TARGET_OBJECTS:${lTarget}>
        PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${l_HEADERS})
endfunction()
