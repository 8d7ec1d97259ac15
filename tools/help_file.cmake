# The help file, ${CMAKE_BINARY_DIR}/delivered/tslhlp.chm, compiled from the pages in delivered/help when one changed.
find_program(chmcmd_program chmcmd REQUIRED)
file(GLOB help_sources CONFIGURE_DEPENDS
     ${CMAKE_SOURCE_DIR}/delivered/help/*.html ${CMAKE_SOURCE_DIR}/delivered/help/tslhlp.*
     ${CMAKE_SOURCE_DIR}/delivered/help/pictures/*.png)
set(help_file ${CMAKE_BINARY_DIR}/delivered/tslhlp.chm)
add_custom_command(
    OUTPUT ${help_file}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/delivered
    COMMAND ${CMAKE_SOURCE_DIR}/tools/make_help ${CMAKE_SOURCE_DIR}/delivered/help ${help_file}
    DEPENDS ${help_sources} ${CMAKE_SOURCE_DIR}/tools/make_help
    COMMENT "Compiling the help"
    VERBATIM)
add_custom_target(help_compiled ALL DEPENDS ${help_file})
