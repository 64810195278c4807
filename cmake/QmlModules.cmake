# varnic_qml_module(TARGET URI [QML_FILES file...] [SOURCES file...] [RESOURCES file...] [IMPORTS uri...]
#                   [DEPENDENCIES uri...] [LIBRARIES target...]): a QML module as a static library. A program that links
# TARGET has the module; it need not import the plugin itself. IMPORTS are modules that whoever imports this one has too.
# The warnings are for our own sources, not for what Qt's tools generate.
function(varnic_qml_module target uri)
    cmake_parse_arguments(PARSE_ARGV 2 module "" "" "QML_FILES;SOURCES;RESOURCES;IMPORTS;DEPENDENCIES;LIBRARIES")
    string(REPLACE "." "/" path "${uri}")
    foreach(file IN LISTS module_QML_FILES)
        file(READ "${file}" text LIMIT 400)
        if(text MATCHES "pragma Singleton")
            set_source_files_properties("${file}" PROPERTIES QT_QML_SINGLETON_TYPE TRUE)
        endif()
    endforeach()
    # The linter would go through what Qt's compiler makes of each QML file.
    set(cachegen)
    if(CMAKE_CXX_CLANG_TIDY)
        set(cachegen NO_CACHEGEN)
    endif()
    set(CMAKE_AUTOMOC ON)
    qt_add_qml_module(${target}
        URI ${uri}
        VERSION 1.0
        STATIC
        ${cachegen}
        RESOURCE_PREFIX /qt/qml
        OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/qml/${path}"
        IMPORTS ${module_IMPORTS}
        DEPENDENCIES QtQuick ${module_DEPENDENCIES}
        QML_FILES ${module_QML_FILES}
        RESOURCES ${module_RESOURCES}
        SOURCES ${module_SOURCES}
        IMPORT_PATH "${CMAKE_BINARY_DIR}/qml")
    foreach(source IN LISTS module_SOURCES)
        set_source_files_properties("${source}" PROPERTIES
            COMPILE_OPTIONS "$<TARGET_PROPERTY:VarnicWarnings,INTERFACE_COMPILE_OPTIONS>")
    endforeach()
    # What Qt's compiler makes of the QML files is many small sources that all include half of Qt.
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "/qmlcache/.*_qml\\.cpp$")
    set_source_files_properties(${sources} PROPERTIES UNITY_GROUP qml)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    # Pedantry changes what the compiler defines, and so must hold for all that shares the headers.
    target_compile_options(${target} PRIVATE -Wpedantic)
    varnic_precompile(${target} QUICK)
    target_include_directories(${target} PUBLIC "${CMAKE_SOURCE_DIR}/Sources" PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
    target_compile_definitions(${target} PUBLIC QT_NO_KEYWORDS)
    target_link_libraries(${target} PUBLIC Qt6::Quick ${module_LIBRARIES} INTERFACE ${target}plugin)
    string(REPLACE "." "_" class "${uri}Plugin")
    set(import "${CMAKE_CURRENT_BINARY_DIR}/${target}_import.cpp")
    file(CONFIGURE OUTPUT "${import}"
        CONTENT "#include <QtQml/QQmlExtensionPlugin>\nQ_IMPORT_QML_PLUGIN(${class})\n")
    target_sources(${target} INTERFACE "$<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${import}>")
endfunction()
