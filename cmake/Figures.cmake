# varnic_figure_fonts(VARIABLE): the program's own fonts, made of Debian's by figures.py, for Qt 6.4 cannot switch a
# font's features on. VARIABLE becomes the list of their files.
#   Varnic Serif     Vollkorn with digits as high as capitals, since its own "$40" reads as "$4o"
#   Varnic Figures   Inter with digits of one width, for what counts on while one looks at it
find_program(VARNIC_FONTTOOLS_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH
    DOC "A Python that has fontTools; Debian's package is for the system's own")
if(VARNIC_FONTTOOLS_PYTHON)
    execute_process(COMMAND "${VARNIC_FONTTOOLS_PYTHON}" -c "import fontTools" RESULT_VARIABLE failed ERROR_QUIET)
endif()
if(NOT VARNIC_FONTTOOLS_PYTHON OR failed)
    message(FATAL_ERROR "fontTools, which makes the program's fonts, is not there: run ./dev setup, or install the "
        "package python3-fonttools")
endif()

# varnic_figure_font(VARIABLE FEATURE FAMILY SOURCE): adds one font to the list.
function(varnic_figure_font variable feature family source)
    find_file(VARNIC_FONT_${source} ${source} REQUIRED
        PATHS /usr/share/fonts /usr/local/share/fonts PATH_SUFFIXES truetype/vollkorn opentype/inter
        DOC "A font of the system that one of the program's is made of")
    string(REGEX REPLACE "^[A-Za-z]+-" "${family}-" name "${source}")
    string(REPLACE " " "" name "${name}")
    set(font "${CMAKE_CURRENT_BINARY_DIR}/fonts/${name}")
    set(script "${CMAKE_SOURCE_DIR}/cmake/figures.py")
    add_custom_command(OUTPUT "${font}"
        COMMAND "${VARNIC_FONTTOOLS_PYTHON}" "${script}" "${VARNIC_FONT_${source}}" ${feature} "${family}" "${font}"
        DEPENDS "${script}" "${VARNIC_FONT_${source}}"
        COMMENT "Making ${name}" VERBATIM)
    set(${variable} ${${variable}} "${font}" PARENT_SCOPE)
endfunction()

function(varnic_figure_fonts variable)
    file(MAKE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/fonts")
    foreach(style Regular SemiBold Italic)
        varnic_figure_font(fonts lnum "Varnic Serif" Vollkorn-${style}.ttf)
    endforeach()
    foreach(style Regular Medium SemiBold)
        varnic_figure_font(fonts tnum "Varnic Figures" Inter-${style}.otf)
    endforeach()
    set(${variable} ${fonts} PARENT_SCOPE)
endfunction()
