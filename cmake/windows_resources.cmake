# The resources of a Windows program: icon, version and manifest. The plugins of a static
# Qt (platform, style, GIF reader) need no entry here: the Qt libraries that the program
# links list them.
enable_language(RC)

# `name` is that of the program's file, without its extension.
function(add_windows_resources target name)
  set(QUORRIX_PROGRAM_NAME ${name})
  set(resources ${PROJECT_BINARY_DIR}/${name}.rc)
  set(manifest ${PROJECT_BINARY_DIR}/${name}.manifest)
  set(QUORRIX_MANIFEST ${manifest})
  configure_file(${PROJECT_SOURCE_DIR}/resources/windows/program.manifest.in ${manifest} @ONLY)
  configure_file(${PROJECT_SOURCE_DIR}/resources/windows/program.rc.in ${resources} @ONLY)
  set_source_files_properties(${resources} PROPERTIES OBJECT_DEPENDS
    "${PROJECT_SOURCE_DIR}/resources/icons/quorrix.ico;${manifest}")
  target_sources(${target} PRIVATE ${resources})
  if(MSVC)
    # Its linker makes the manifest's resource from this file and its own.
    target_sources(${target} PRIVATE ${manifest})
  else()
    set_property(SOURCE ${resources} APPEND PROPERTY COMPILE_DEFINITIONS QUORRIX_EMBED_MANIFEST)
  endif()
endfunction()
