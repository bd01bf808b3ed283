# The zip file of the Windows build, by the target `package`: programs, a text to begin with, examples, licences of all
# that is linked in.
install(TARGETS tarnvexo tarnvexo_contour RUNTIME DESTINATION .)

configure_file(${CMAKE_CURRENT_LIST_DIR}/README.txt.in ${CMAKE_BINARY_DIR}/package/README.txt @ONLY NEWLINE_STYLE CRLF)
install(FILES ${CMAKE_BINARY_DIR}/package/README.txt DESTINATION .)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/examples DESTINATION .)
install(FILES ${CMAKE_SOURCE_DIR}/docs/windows.md ${CMAKE_SOURCE_DIR}/docs/command-line.md DESTINATION docs)

install(FILES ${CMAKE_SOURCE_DIR}/LICENSE DESTINATION licences RENAME tarnvexo.txt)
foreach(source metis suitesparse highway cpp-httplib)
  install(FILES ${TARNVEXO_WINDOWS_SOURCES}/${source}/debian/copyright DESTINATION licences RENAME ${source}.txt)
endforeach()
# Of Debian's packages: headers, zlib, the system interface and the run-time libraries of the compiler.
foreach(package libcli11-dev nlohmann-json3-dev libtinygltf-dev libz-mingw-w64-dev mingw-w64-x86-64-dev
    gcc-mingw-w64-x86-64-posix-runtime)
  install(FILES /usr/share/doc/${package}/copyright DESTINATION licences RENAME ${package}.txt)
endforeach()
# Of the viewer's packages. npm has put them beneath the build directory when the page was built.
if(TARNVEXO_VIEWER)
  install(CODE "
    set(viewer \"${CMAKE_BINARY_DIR}/viewer-page/viewer\")
    execute_process(COMMAND ${NPM} ls --omit=dev --all --parseable WORKING_DIRECTORY \${viewer}
      OUTPUT_VARIABLE folders ERROR_QUIET)
    string(REPLACE \"\\n\" \";\" folders \"\${folders}\")
    foreach(folder IN LISTS folders)
      if(folder MATCHES \"/node_modules/(.+)$\")
        string(REGEX REPLACE \"^.*/node_modules/\" \"\" name \"\${folder}\")
        string(REPLACE \"/\" \"-\" name \"\${name}\")
        file(GLOB licence \"\${folder}/LICEN[CS]E*\" \"\${folder}/licen[cs]e*\" \"\${folder}/LICEN[CS]E.md\")
        if(licence)
          list(GET licence 0 licence)
          configure_file(\"\${licence}\" \"\${CMAKE_INSTALL_PREFIX}/licences/viewer/\${name}.txt\" COPYONLY)
        endif()
      endif()
    endforeach()
  ")
endif()

set(CMAKE_SKIP_PACKAGE_ALL_DEPENDENCY ON) # the tests are not for others
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME tarnvexo-${PROJECT_VERSION}-windows)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
