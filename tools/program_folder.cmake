# The finished program folder, ${TESSALY_OUT}/tessaly, and the tools beside it, ${TESSALY_OUT}/tools.
# tools/deliver never overwrites what the user's folder holds.
set(TESSALY_OUT ${CMAKE_SOURCE_DIR}/out CACHE PATH "Where the program folder is made")
file(GLOB delivered_beside CONFIGURE_DEPENDS
     ${CMAKE_SOURCE_DIR}/delivered/pictures/*.gif ${CMAKE_SOURCE_DIR}/delivered/tips.tip
     ${CMAKE_SOURCE_DIR}/delivered/mail_providers.tsv)

if(TARGET tessaly AND TARGET mailapp_store AND TARGET help_compiled)
add_custom_target(program_folder ALL
    COMMAND ${CMAKE_SOURCE_DIR}/tools/deliver ${TESSALY_OUT}/tessaly
            $<TARGET_FILE:tessaly> ${CMAKE_BINARY_DIR}/delivered/mailapp.mdb ${help_file} ${delivered_beside}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${TESSALY_OUT}/tools
    COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_FILE:tessaly_jobs> $<TARGET_FILE:make_sample>
            ${CMAKE_BINARY_DIR}/delivered/mailapp.mdb ${TESSALY_OUT}/tools
    DEPENDS tessaly tessaly_jobs make_sample mailapp_store help_compiled
    COMMENT "Making the program folder"
    VERBATIM)
endif()
