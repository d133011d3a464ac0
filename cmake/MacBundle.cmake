# The window as a macOS bundle with its Info.plist and an .icns rendered from the SVG.
# To make it self-contained, run macdeployqt on the built bundle (see the README).
set(iconset ${lumabroom_generated}/Lumabroom.iconset)
set(icns ${lumabroom_generated}/Lumabroom.icns)
set(iconset_args)
foreach(size 16 32 128 256 512)
    math(EXPR double "${size} * 2")
    list(APPEND iconset_args ${size} ${iconset}/icon_${size}x${size}.png ${double} ${iconset}/icon_${size}x${size}@2x.png)
endforeach()
add_custom_command(OUTPUT ${icns}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${iconset}
    COMMAND ${LUMABROOM_RUN_RENDER_ICON} ${icon_svg} ${iconset_args}
    COMMAND iconutil -c icns -o ${icns} ${iconset}
    DEPENDS lumabroom-render-icon ${icon_svg}
    VERBATIM)
target_sources(lumabroom PRIVATE ${icns})
set_source_files_properties(${icns} TARGET_DIRECTORY lumabroom PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
set_target_properties(lumabroom PROPERTIES
    MACOSX_BUNDLE ON
    OUTPUT_NAME Lumabroom
    MACOSX_BUNDLE_INFO_PLIST ${lumabroom_packaging}/Info.plist.in
    MACOSX_BUNDLE_BUNDLE_NAME Lumabroom
    MACOSX_BUNDLE_EXECUTABLE_NAME Lumabroom
    MACOSX_BUNDLE_GUI_IDENTIFIER ${LUMABROOM_APP_ID}
    MACOSX_BUNDLE_ICON_FILE Lumabroom.icns
    MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION}
    MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION})
