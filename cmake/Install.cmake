# Install rules. Everything installed is self-contained: no installed file points back into the build folder.
# The window's files (desktop entry, metainfo, icons, its man page) come with the target lumabroom only,
# so that a build without it installs no menu entry that cannot start. On macOS the window is a bundle
# that carries its own icon, and the freedesktop files are left out.
include(GNUInstallDirs)

set(LUMABROOM_APP_ID app.lumabroom.Lumabroom)
set(LUMABROOM_MAINTAINER "The Lumabroom developers <packages@lumabroom.app>")
set(LUMABROOM_ICON_SIZES 16 24 32 48 64 128 256 512)
set(lumabroom_packaging ${PROJECT_SOURCE_DIR}/packaging)
set(lumabroom_generated ${CMAKE_BINARY_DIR}/packaging)
# Debian wants man pages and the changelog compressed; macOS and the BSDs read them plain.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    set(lumabroom_compress ON)
else()
    set(lumabroom_compress OFF)
endif()
set(lumabroom_generated_files)

# Configures packaging/NAME.in into the build folder, gzips it where wanted, and returns the file to install.
function(lumabroom_generated_file name out_var)
    configure_file(${lumabroom_packaging}/${name}.in ${lumabroom_generated}/${name} @ONLY)
    set(file ${lumabroom_generated}/${name})
    if(lumabroom_compress)
        add_custom_command(OUTPUT ${file}.gz
            COMMAND gzip -9nkf ${file}
            DEPENDS ${file}
            VERBATIM)
        set(file ${file}.gz)
    endif()
    set(lumabroom_generated_files ${lumabroom_generated_files} ${file} PARENT_SCOPE)
    set(${out_var} ${file} PARENT_SCOPE)
endfunction()

# Configured even without the window, so that the tests validate it.
configure_file(${lumabroom_packaging}/${LUMABROOM_APP_ID}.metainfo.xml.in
    ${lumabroom_generated}/${LUMABROOM_APP_ID}.metainfo.xml @ONLY)

install(TARGETS lumabroom-scan RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
lumabroom_generated_file(lumabroom-scan.1 man_scan)
install(FILES ${man_scan} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

if(TARGET lumabroom)
    find_package(Qt6 6.2 REQUIRED COMPONENTS Gui Svg)
    add_executable(lumabroom-render-icon ${lumabroom_packaging}/tools/RenderIcon.cpp)
    target_link_libraries(lumabroom-render-icon PRIVATE Qt6::Gui Qt6::Svg lumabroom_warnings)
    set(icon_svg ${lumabroom_packaging}/lumabroom.svg)
    # Under the sanitizer presets the tool is instrumented too; a leak inside Qt must not fail the build.
    set(LUMABROOM_RUN_RENDER_ICON ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0 $<TARGET_FILE:lumabroom-render-icon>)

    install(TARGETS lumabroom
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        BUNDLE DESTINATION .)
    lumabroom_generated_file(lumabroom.1 man_app)
    install(FILES ${man_app} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

    if(APPLE)
        include(${CMAKE_CURRENT_LIST_DIR}/MacBundle.cmake)
    else()
        set(render_args)
        set(icon_pngs)
        foreach(size IN LISTS LUMABROOM_ICON_SIZES)
            set(png ${lumabroom_generated}/icons/${size}x${size}/apps/${LUMABROOM_APP_ID}.png)
            list(APPEND render_args ${size} ${png})
            list(APPEND icon_pngs ${png})
            install(FILES ${png} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
        endforeach()
        list(TRANSFORM icon_pngs REPLACE "/[^/]+$" "" OUTPUT_VARIABLE icon_dirs)
        add_custom_command(OUTPUT ${icon_pngs}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${icon_dirs}
            COMMAND ${LUMABROOM_RUN_RENDER_ICON} ${icon_svg} ${render_args}
            DEPENDS lumabroom-render-icon ${icon_svg}
            VERBATIM)
        list(APPEND lumabroom_generated_files ${icon_pngs})

        install(FILES ${icon_svg} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps
            RENAME ${LUMABROOM_APP_ID}.svg)
        install(FILES ${lumabroom_packaging}/${LUMABROOM_APP_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
        install(FILES ${lumabroom_generated}/${LUMABROOM_APP_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
    endif()
endif()

if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    # A Debian package must carry its copyright and changelog; the changelog's date is the release date.
    execute_process(COMMAND date -u -R -d "${LUMABROOM_RELEASE_DATE} 12:00"
        OUTPUT_VARIABLE LUMABROOM_RELEASE_DATE_RFC2822 OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    lumabroom_generated_file(changelog changelog)
    install(FILES ${changelog} ${lumabroom_packaging}/copyright DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/lumabroom)
endif()

add_custom_target(lumabroom_packaging_files ALL DEPENDS ${lumabroom_generated_files})
