# Applications in their bundles, in this tree and for whoever has found the package VantorLib.

# vantor_add_application(<name> RESOURCES <text> SOURCES ...): the target <name> is the program of the bundle <name>.app,
# with the Info.plist and PkgInfo of this folder and a resource file that compile_resources makes of <text>.
function(vantor_add_application name)
  cmake_parse_arguments(PARSE_ARGV 1 APPLICATION "" "RESOURCES" "SOURCES")
  set(folder ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
  if(NOT folder)
    set(folder ${CMAKE_CURRENT_BINARY_DIR})
  endif()
  set(contents ${folder}/${name}.app/Contents)

  add_executable(${name} ${APPLICATION_SOURCES})
  target_link_libraries(${name} PRIVATE VantorLib::vantor)
  set_target_properties(${name} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${contents}/Linux
    VANTOR_CONTENTS ${contents}
    INSTALL_RPATH_USE_LINK_PATH ON)
  foreach(file Info.plist PkgInfo)
    configure_file(${file} ${contents}/${file} COPYONLY)
  endforeach()

  # The compiler of resources is a program on the same platform: it gets a world of its own, not the user's.
  set(resources ${contents}/Resources/${name}.rsrc)
  set(world ${CMAKE_CURRENT_BINARY_DIR}/${name}_resources)
  add_custom_command(OUTPUT ${resources}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${contents}/Resources ${world}
    COMMAND ${CMAKE_COMMAND} -E env XDG_STATE_HOME=${world} XDG_RUNTIME_DIR=${world}
      $<TARGET_FILE:VantorLib::compile_resources> ${CMAKE_CURRENT_SOURCE_DIR}/${APPLICATION_RESOURCES} ${resources}
    DEPENDS VantorLib::compile_resources ${CMAKE_CURRENT_SOURCE_DIR}/${APPLICATION_RESOURCES}
    COMMENT "Making the resources of ${name}"
    VERBATIM)
  add_custom_target(${name}_resources DEPENDS ${resources})
  add_dependencies(${name} ${name}_resources)
endfunction()

# vantor_install_application(<name>): puts the bundle where Launch Services looks for applications of the chosen prefix.
function(vantor_install_application name)
  include(GNUInstallDirs)
  set(destination ${CMAKE_INSTALL_DATADIR}/vantor/Applications/${name}.app/Contents)
  get_target_property(contents ${name} VANTOR_CONTENTS)
  install(TARGETS ${name} RUNTIME DESTINATION ${destination}/Linux)
  install(FILES ${contents}/Info.plist ${contents}/PkgInfo DESTINATION ${destination})
  install(DIRECTORY ${contents}/Resources DESTINATION ${destination})
endfunction()
