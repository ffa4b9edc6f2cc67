# CLI11 and JSON for Modern C++, as Debian packages them. Both consist of headers only.
add_library(quorrix_header_libraries INTERFACE)
if(CMAKE_CROSSCOMPILING)
  # Their headers are in the folder with those of this system, which must not be searched.
  set(headers ${CMAKE_BINARY_DIR}/header_libraries)
  file(MAKE_DIRECTORY ${headers})
  foreach(library CLI nlohmann)
    if(NOT IS_DIRECTORY /usr/include/${library})
      message(FATAL_ERROR "/usr/include/${library} is missing; scripts/setup installs it.")
    endif()
    file(CREATE_LINK /usr/include/${library} ${headers}/${library} SYMBOLIC)
  endforeach()
  target_include_directories(quorrix_header_libraries SYSTEM INTERFACE ${headers})
else()
  find_package(CLI11 REQUIRED)
  find_package(nlohmann_json REQUIRED)
  target_link_libraries(quorrix_header_libraries INTERFACE
    CLI11::CLI11 nlohmann_json::nlohmann_json)
endif()
