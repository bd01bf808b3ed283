# Installs BUILD into a fresh PREFIX and solves MODEL there with the sparse engine.
#     cmake -D BUILD=... -D PREFIX=... -D BINDIR=bin -D MODEL=... -P run_installed.cmake
file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX}
  OUTPUT_VARIABLE installation ERROR_VARIABLE installation RESULT_VARIABLE exitCode)
if(NOT exitCode EQUAL 0)
  message(FATAL_ERROR "Installing ${BUILD} ended with ${exitCode}:\n${installation}")
endif()

if(NOT EXISTS "${PREFIX}/${BINDIR}/Tarn+Vexo_Contour.exe")
  message(FATAL_ERROR "The viewer that the console run starts is not installed:\n${installation}")
endif()

execute_process(COMMAND ${PREFIX}/${BINDIR}/tarnvexo solve ${MODEL} --solver sparse --format none --quiet
  OUTPUT_VARIABLE report ERROR_VARIABLE diagnostics RESULT_VARIABLE exitCode)
if(NOT exitCode EQUAL 0 OR NOT report MATCHES "engine +CHOLMOD ")
  message(FATAL_ERROR "${PREFIX}/${BINDIR}/tarnvexo ended with ${exitCode}:\n${report}${diagnostics}")
endif()
