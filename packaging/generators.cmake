# Read by CPack for each kind of package. What only a system's own packages hold is not in the archive, which runs from
# any folder.
if(CPACK_GENERATOR STREQUAL "TXZ")
    set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
    set(CPACK_COMPONENTS_ALL program models)
    set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
endif()
