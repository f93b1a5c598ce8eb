# Texts by key: JSON tables of all languages become Qt message files, or are packed into a library.
include_guard(GLOBAL)
include(LabelcutResources)

# labelcut_message_files(VARIABLE NAME FOLDER folder TABLES json…): NAME_<language>.qm in FOLDER for
# each language of the tables, which are joined into one. VARIABLE becomes the list of the files.
function(labelcut_message_files variable name)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "FOLDER" "TABLES")
  set(writer "${PROJECT_SOURCE_DIR}/cmake/make_ts.py")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${writer}" ${arg_TABLES})
  # The tables themselves say what languages there are.
  execute_process(COMMAND "${Python3_EXECUTABLE}" -B "${writer}" --languages ${arg_TABLES}
    OUTPUT_VARIABLE languages OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE "\n" ";" languages "${languages}")
  set(sources)
  set(compiled)
  foreach(language IN LISTS languages)
    set(source "${CMAKE_CURRENT_BINARY_DIR}/${name}_${language}.ts")
    set(file "${arg_FOLDER}/${name}_${language}.qm")
    add_custom_command(OUTPUT "${file}"
      COMMAND "${CMAKE_COMMAND}" -E make_directory "${arg_FOLDER}"
      COMMAND Qt6::lrelease -silent -idbased "${source}" -qm "${file}"
      DEPENDS "${source}"
      COMMENT "Compiling the texts of ${name} in ${language}" VERBATIM)
    list(APPEND sources "${source}")
    list(APPEND compiled "${file}")
  endforeach()
  add_custom_command(OUTPUT ${sources}
    COMMAND "${Python3_EXECUTABLE}" -B "${writer}" "${CMAKE_CURRENT_BINARY_DIR}" "${name}"
      ${arg_TABLES}
    DEPENDS "${writer}" ${arg_TABLES}
    COMMENT "Writing the string tables of ${name}" VERBATIM)
  set(${variable} ${compiled} PARENT_SCOPE)
endfunction()

# labelcut_text_table(TARGET NAME PREFIX resource-path RESOURCES name TABLES json… [FILES file…]):
# packs the tables into the library under :PREFIX, with FILES beside them. RESOURCES is the name for
# Q_INIT_RESOURCE, without which a linker leaves them in the archive.
function(labelcut_text_table target name)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "PREFIX;RESOURCES" "TABLES;FILES")
  labelcut_message_files(files ${name}
    FOLDER "${CMAKE_CURRENT_BINARY_DIR}" TABLES ${arg_TABLES})
  labelcut_packed_resources(${target} "${arg_RESOURCES}"
    PREFIX "${arg_PREFIX}" FILES ${files} ${arg_FILES})
endfunction()
