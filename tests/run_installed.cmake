# Installs BUILD into a fresh PREFIX and solves MODEL there with CHOLMOD; then serves RESULT, first with the
# page server at its place (a browser that ends at once draws no picture), then without.
#     cmake -D BUILD=... -D PREFIX=... -D BINDIR=bin -D MODEL=... -D RESULT=... -P run_installed.cmake
file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX}
  OUTPUT_VARIABLE installation ERROR_VARIABLE installation RESULT_VARIABLE exitCode)
if(NOT exitCode EQUAL 0)
  message(FATAL_ERROR "Installing ${BUILD} ended with ${exitCode}:\n${installation}")
endif()

if(NOT EXISTS "${PREFIX}/${BINDIR}/Tarn+Vexo_Contour.exe")
  message(FATAL_ERROR "The viewer that the console run starts is not installed:\n${installation}")
endif()

execute_process(COMMAND ${PREFIX}/${BINDIR}/tarnvexo solve ${MODEL} --solver cholmod --format none --quiet
  OUTPUT_VARIABLE report ERROR_VARIABLE diagnostics RESULT_VARIABLE exitCode)
if(NOT exitCode EQUAL 0 OR NOT report MATCHES "engine +CHOLMOD ")
  message(FATAL_ERROR "${PREFIX}/${BINDIR}/tarnvexo ended with ${exitCode}:\n${report}${diagnostics}")
endif()

function(expect_picture_fault what)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env TARNVEXO_BROWSER=${CMAKE_COMMAND}
      ${PREFIX}/${BINDIR}/tarnvexo picture ${RESULT} --out ${PREFIX}/picture.png --quiet
    OUTPUT_VARIABLE output ERROR_VARIABLE diagnostics)
  if(NOT diagnostics MATCHES "${what}|built without the viewer")
    message(FATAL_ERROR "tarnvexo picture does not say \"${what}\":\n${output}${diagnostics}")
  endif()
endfunction()

expect_picture_fault("the browser has ended without a picture")
file(REMOVE ${PREFIX}/lib/tarnvexo/libtarnvexo_server.so)
expect_picture_fault("cannot be served: libtarnvexo_server.so: cannot open shared object file")
