# Read by CPack for each kind of package. What only a system's own packages hold is not in the archive, which runs from
# any folder; and RPM packages have a changelog of their own and are none of lintian's.
if(CPACK_GENERATOR STREQUAL "TXZ")
    set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
    set(CPACK_COMPONENTS_ALL program models)
    set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
endif()
if(CPACK_GENERATOR STREQUAL "RPM")
    list(FILTER CPACK_COMPONENTS_ALL EXCLUDE REGEX "-debian$")
endif()
