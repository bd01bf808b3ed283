# The zip file of the Windows build, by the target `package`: programs and what Windows shows of them, a text to begin
# with, examples, licences of all that is linked in.
enable_language(RC)
function(describe target name description)
  configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/program.rc.in ${CMAKE_BINARY_DIR}/package/${target}.rc @ONLY)
  target_sources(${target} PRIVATE ${CMAKE_BINARY_DIR}/package/${target}.rc)
  set_source_files_properties(${CMAKE_BINARY_DIR}/package/${target}.rc PROPERTIES OBJECT_DEPENDS
    "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/program.manifest;${CMAKE_CURRENT_FUNCTION_LIST_DIR}/tarnvexo.ico")
endfunction()
describe(tarnvexo tarnvexo "Finite-element analysis with inertia relief")
describe(tarnvexo_contour "Tarn+Vexo_Contour" "Viewer of results of tarnvexo")

install(TARGETS tarnvexo tarnvexo_contour RUNTIME DESTINATION .)

configure_file(${CMAKE_CURRENT_LIST_DIR}/README.txt.in ${CMAKE_BINARY_DIR}/package/README.txt @ONLY NEWLINE_STYLE CRLF)
install(FILES ${CMAKE_BINARY_DIR}/package/README.txt DESTINATION .)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/examples DESTINATION .)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/docs DESTINATION . PATTERN man EXCLUDE)

install(FILES ${CMAKE_SOURCE_DIR}/LICENSE DESTINATION licences RENAME tarnvexo.txt)
foreach(source metis suitesparse highway cpp-httplib)
  install(FILES ${TARNVEXO_WINDOWS_SOURCES}/${source}/debian/copyright DESTINATION licences RENAME ${source}.txt)
endforeach()
# Of Debian's packages: headers, zlib, the system interface and the run-time libraries of the compiler.
foreach(package libcli11-dev nlohmann-json3-dev libtinygltf-dev libz-mingw-w64-dev mingw-w64-x86-64-dev
    gcc-mingw-w64-x86-64-posix-runtime)
  install(FILES /usr/share/doc/${package}/copyright DESTINATION licences RENAME ${package}.txt)
endforeach()
# Of the packages that the viewer's page holds parts of; written beside it when it was built.
if(TARNVEXO_VIEWER)
  install(FILES ${CMAKE_BINARY_DIR}/viewer-page/viewer/dist/licences.txt DESTINATION licences RENAME viewer.txt)
endif()

install(SCRIPT ${CMAKE_CURRENT_LIST_DIR}/PackedTexts.cmake)

set(CMAKE_SKIP_PACKAGE_ALL_DEPENDENCY ON) # the tests are not for others
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME tarnvexo-${PROJECT_VERSION}-windows)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
