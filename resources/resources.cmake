# Included from the top-level list: generated sources must be made in the
# directory that defines the target using them.
set(VELTOR_RES_DIR ${PROJECT_SOURCE_DIR}/resources)
set(VELTOR_RES_BIN ${PROJECT_BINARY_DIR}/resources)
target_sources(veltor_gui PRIVATE ${VELTOR_RES_DIR}/res.qrc)

# The German translation is compiled by lrelease at build time and served as
# :/languages/lang_de.qm from a resource file of its own.
set_source_files_properties(${VELTOR_RES_DIR}/languages/lang_de.ts PROPERTIES
    OUTPUT_LOCATION ${VELTOR_RES_BIN}/languages)
qt_add_translation(VELTOR_QM_FILES ${VELTOR_RES_DIR}/languages/lang_de.ts)
set(VELTOR_TRANSLATIONS_QRC ${VELTOR_RES_BIN}/translations.qrc)
file(WRITE ${VELTOR_TRANSLATIONS_QRC}.in
    "<RCC><qresource prefix=\"/languages\"><file alias=\"lang_de.qm\">languages/lang_de.qm</file></qresource></RCC>\n")
configure_file(${VELTOR_TRANSLATIONS_QRC}.in ${VELTOR_TRANSLATIONS_QRC} COPYONLY)
qt_add_resources(VELTOR_TRANSLATION_SOURCES ${VELTOR_TRANSLATIONS_QRC})
set_source_files_properties(${VELTOR_TRANSLATION_SOURCES} PROPERTIES SKIP_AUTORCC ON)
add_custom_target(veltor_translations DEPENDS ${VELTOR_QM_FILES})
target_sources(veltor_gui PRIVATE ${VELTOR_TRANSLATION_SOURCES})
add_dependencies(veltor_gui veltor_translations)
