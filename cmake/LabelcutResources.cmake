# Files packed into a library or a plug-in, where Qt reads them under a resource path.
include_guard(GLOBAL)

# labelcut_packed_resources(TARGET NAME PREFIX resource-path [BASE folder] FILES file…): the files
# under :PREFIX, by their own names, or by their paths below BASE. NAME is the one for
# Q_INIT_RESOURCE, without which a linker leaves them in an archive.
function(labelcut_packed_resources target name)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "PREFIX;BASE" "FILES")
  set(entries "")
  foreach(file IN LISTS arg_FILES)
    if(arg_BASE)
      file(RELATIVE_PATH alias "${arg_BASE}" "${file}")
    else()
      cmake_path(GET file FILENAME alias)
    endif()
    string(APPEND entries "<file alias=\"${alias}\">${file}</file>\n")
  endforeach()
  set(index "${CMAKE_CURRENT_BINARY_DIR}/${name}.qrc")
  set(packed "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
  file(CONFIGURE OUTPUT "${index}" CONTENT
"<RCC><qresource prefix=\"${arg_PREFIX}\">
${entries}</qresource></RCC>
" @ONLY)
  add_custom_command(OUTPUT "${packed}"
    COMMAND Qt6::rcc --name "${name}" --no-compress -o "${packed}" "${index}"
    DEPENDS "${index}" ${arg_FILES}
    COMMENT "Packing the resources of ${target}" VERBATIM)
  set_source_files_properties("${packed}" PROPERTIES SKIP_AUTOMOC ON)
  target_sources(${target} PRIVATE "${packed}")
endfunction()
