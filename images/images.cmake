# Renders the SVG sources at build time and puts them into the resources of a target, where the code
# finds them under ":/images/".
function(morvane_add_images target)
  set(folder ${PROJECT_SOURCE_DIR}/images)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/images)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${folder}/manifest.txt)

  # The manifest is the only list: names, sources and sizes are read from it here and by the tool.
  file(STRINGS ${folder}/manifest.txt lines REGEX "^[^# ]")
  foreach(line ${lines})
    string(REGEX MATCHALL "[^ ]+" fields "${line}")
    list(GET fields 0 name)
    list(GET fields 1 source)
    string(REGEX REPLACE "([.][a-z]+)$" "@2x\\1" double_name ${name})
    list(APPEND pictures ${output}/${name} ${output}/${double_name})
    list(APPEND sources ${folder}/${source}.svg)
  endforeach()
  list(REMOVE_DUPLICATES sources)

  # What the toolkit keeps for the life of a process is no leak worth failing a build for.
  add_custom_command(OUTPUT ${pictures}
    COMMAND ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0
      $<TARGET_FILE:renderimages> ${folder}/manifest.txt ${output}
    DEPENDS renderimages ${folder}/manifest.txt ${sources}
    COMMENT "Rendering the pictures"
    VERBATIM)
  qt_add_resources(${target} images PREFIX /images BASE ${output} FILES ${pictures})
endfunction()

# The portraits of the demo data are shipped as PNG: `cmake --build ... --target portraits` draws
# them anew after a change of a source.
function(morvane_add_portraits_target)
  add_custom_target(portraits
    COMMAND ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0
      $<TARGET_FILE:renderimages> --single ${PROJECT_SOURCE_DIR}/images/portraits/manifest.txt
      ${PROJECT_SOURCE_DIR}/demo-data/Portraits
    VERBATIM)
endfunction()
