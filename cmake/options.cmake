# One INTERFACE target that every other target links: warnings, defines, sanitizers.
add_library(morvane_options INTERFACE)
target_compile_definitions(morvane_options INTERFACE
  QT_NO_CAST_FROM_BYTEARRAY
  QT_NO_FOREACH
  QT_NO_KEYWORDS
  QT_USE_QSTRINGBUILDER
  QT_DISABLE_DEPRECATED_BEFORE=0x060400
  $<$<CONFIG:Debug>:MORVANE_TRACK_MEMORY>)
target_compile_options(morvane_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
  -Wformat=2
  $<$<BOOL:${MORVANE_WERROR}>:-Werror>)
if(MORVANE_SANITIZE)
  target_compile_options(morvane_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
    # The toolkit compares two empty lists by memcmp() on null.
    -fno-sanitize=nonnull-attribute)
  target_link_options(morvane_options INTERFACE -fsanitize=address,undefined)
endif()
if(BUILD_SHARED_LIBS)
  # A static library hides an upward call; a shared one with this flag fails to link.
  target_link_options(morvane_options INTERFACE -Wl,--no-undefined)
endif()

find_program(MOLD_PROGRAM mold)
if(MOLD_PROGRAM AND NOT MORVANE_SANITIZE)
  target_link_options(morvane_options INTERFACE -fuse-ld=mold)
endif()
