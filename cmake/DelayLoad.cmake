# varnic_delay_load(TARGET OBJECTS target... LIBRARIES file-or-target...): the program loads these libraries when it
# first calls them or `loadDelayedLibraries`. They bring over a hundred others, which would be half of the time to the first picture. A library is
# left out of what the program needs because all that its objects call is defined in the program.
# x86-64 only; elsewhere, and under the sanitizers, which load libraries in their own way, all is loaded at the start.
function(varnic_delay_load target)
    if(NOT CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64" OR VARNIC_SANITIZE)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 1 delay "" "" "OBJECTS;LIBRARIES")
    set(objects)
    foreach(object IN LISTS delay_OBJECTS)
        list(APPEND objects "$<TARGET_FILE:${object}>")
    endforeach()
    list(REMOVE_DUPLICATES delay_LIBRARIES)
    set(script "${CMAKE_SOURCE_DIR}/cmake/delay_load.py")
    set(assembly "${CMAKE_CURRENT_BINARY_DIR}/${target}_delayed.S")
    add_custom_command(OUTPUT "${assembly}"
        COMMAND Python3::Interpreter "${script}" "${assembly}" --objects ${objects} --libraries ${delay_LIBRARIES}
        DEPENDS "${script}" ${delay_OBJECTS} VERBATIM)
    set_source_files_properties("${assembly}" PROPERTIES LANGUAGE ASM)
    target_sources(${target} PRIVATE "${assembly}")
    target_link_options(${target} PRIVATE LINKER:--as-needed)
endfunction()
