# Renders the SVG sources at build time and puts them into the resources of a target.
function(morvane_add_images target)
endfunction()
