# The viewer's page inside the program: viewer/ is built in a copy beneath the build directory, its one page compressed
# and written as the C++ array of src/view/ViewerPage.h. Rebuilt when a source of it has changed; packages are installed
# again only when their lock file has (cmake/BuildViewerPage.cmake). A build that fails leaves the program without its
# viewer, and is tried again by the next build.
option(TARNVEXO_VIEWER "Build the viewer of `tarnvexo view` into the program (needs Node.js and npm)" ON)

set(viewerPageSource ${CMAKE_BINARY_DIR}/viewer-page/ViewerPage.cpp)
if(TARNVEXO_VIEWER)
  find_program(NPM npm)
  find_program(NODE NAMES node nodejs)
endif()
if(TARNVEXO_VIEWER AND NPM AND NODE)
  file(GLOB_RECURSE viewerSources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/viewer/src/* ${CMAKE_SOURCE_DIR}/viewer/public/*)
  file(GLOB viewerSettings CONFIGURE_DEPENDS
    ${CMAKE_SOURCE_DIR}/viewer/*.json ${CMAKE_SOURCE_DIR}/viewer/*.ts ${CMAKE_SOURCE_DIR}/viewer/*.html)
  set(viewerStamp ${CMAKE_BINARY_DIR}/viewer-page/built.stamp) # not there after a build that failed
  add_custom_command(OUTPUT ${viewerStamp}
    COMMAND ${CMAKE_COMMAND} -D SOURCE=${CMAKE_SOURCE_DIR}/viewer -D BUILD=${CMAKE_BINARY_DIR}/viewer-page
      -D NPM=${NPM} -D NODE=${NODE} -D EMBED=${CMAKE_SOURCE_DIR}/cmake/embed-page.mjs -D RESULT=${viewerPageSource}
      -D STAMP=${viewerStamp} -P ${CMAKE_SOURCE_DIR}/cmake/BuildViewerPage.cmake
    DEPENDS ${viewerSources} ${viewerSettings} ${CMAKE_SOURCE_DIR}/cmake/BuildViewerPage.cmake
      ${CMAKE_SOURCE_DIR}/cmake/embed-page.mjs
    BYPRODUCTS ${viewerPageSource}
    COMMENT "Building the viewer's page" VERBATIM)
  add_custom_target(viewer_page DEPENDS ${viewerStamp})
  set_source_files_properties(${viewerPageSource} PROPERTIES GENERATED TRUE)
  add_dependencies(tarnvexo_view viewer_page)
else()
  if(TARNVEXO_VIEWER)
    message(WARNING "Node.js and npm are not there: tarnvexo is built without its viewer. "
      "Install them and configure again, or silence this with -DTARNVEXO_VIEWER=OFF.")
  endif()
  file(CONFIGURE OUTPUT ${viewerPageSource} CONTENT
"#include \"view/ViewerPage.h\"

std::string_view tarnvexo::CompressedViewerPage()
{
    return {}; // built without the viewer
}
")
endif()
target_sources(tarnvexo_view PRIVATE ${viewerPageSource})
