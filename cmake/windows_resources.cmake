# The resources of a Windows program: icon, version and manifest. The plugins of a static
# Qt (platform, style, GIF reader) need no entry here: the Qt libraries that the program
# links list them.
enable_language(RC)

function(add_windows_resources target)
  configure_file(${PROJECT_SOURCE_DIR}/resources/windows/quorrix.manifest.in
                 ${PROJECT_BINARY_DIR}/quorrix.manifest @ONLY)
  configure_file(${PROJECT_SOURCE_DIR}/resources/windows/quorrix.rc.in
                 ${PROJECT_BINARY_DIR}/quorrix.rc @ONLY)
  set_source_files_properties(${PROJECT_BINARY_DIR}/quorrix.rc PROPERTIES OBJECT_DEPENDS
    "${PROJECT_SOURCE_DIR}/resources/icons/quorrix.ico;${PROJECT_BINARY_DIR}/quorrix.manifest")
  target_sources(${target} PRIVATE ${PROJECT_BINARY_DIR}/quorrix.rc)
  if(MSVC)
    # Its linker makes the manifest's resource from this file and its own.
    target_sources(${target} PRIVATE ${PROJECT_BINARY_DIR}/quorrix.manifest)
  else()
    set_property(SOURCE ${PROJECT_BINARY_DIR}/quorrix.rc
      APPEND PROPERTY COMPILE_DEFINITIONS QUORRIX_EMBED_MANIFEST)
  endif()
endfunction()
