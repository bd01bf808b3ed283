# One whole run: the model of CASE in a fresh DIRECTORY, PROGRAM there with nothing on standard input, then the six
# result files and the console text against CASE/expected.
#     cmake -D PROGRAM=... -D PYTHON=... -D COMPARE=.../compare.py -D CASE=... -D DIRECTORY=... -P run_case.cmake
# -D EMULATOR=... (a list): what runs PROGRAM when it is one for Windows, whose lines end as they do there.
# -D ARGUMENTS=... (words with blanks between): a run of a command, whose standard output is no console text and is not
# compared.
file(REMOVE_RECURSE ${DIRECTORY})
file(MAKE_DIRECTORY ${DIRECTORY})
file(COPY ${CASE}/fem_solving.txt DESTINATION ${DIRECTORY})

if(ARGUMENTS)
  separate_arguments(ARGUMENTS)
  set(output report.txt)
else()
  set(output console.txt)
endif()
execute_process(COMMAND ${EMULATOR} ${PROGRAM} ${ARGUMENTS}
  WORKING_DIRECTORY ${DIRECTORY}
  INPUT_FILE /dev/null
  OUTPUT_FILE ${DIRECTORY}/${output}
  ERROR_VARIABLE diagnostics
  RESULT_VARIABLE exitCode)
if(NOT exitCode EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} ended with ${exitCode} in ${DIRECTORY}:\n${diagnostics}")
endif()

set(fromWindows)
if(PROGRAM MATCHES "\\.exe$")
  set(fromWindows --windows)
endif()
execute_process(COMMAND ${PYTHON} ${COMPARE} ${fromWindows} ${CASE}/expected ${DIRECTORY}
  OUTPUT_VARIABLE comparison
  ERROR_VARIABLE comparison
  RESULT_VARIABLE exitCode)
if(NOT exitCode EQUAL 0)
  message(FATAL_ERROR "The results in ${DIRECTORY} are not those in ${CASE}/expected:\n${comparison}")
endif()
# compare.py passes over files that stand in neither directory.
foreach(file "structure.dxf" "deformation.dxf" "Node_Dis.txt" "Shell element node stress.txt"
    "Shell element average node stress.txt" "Tarn+Vexo_AverageStrs.txt" "console.txt")
  if(NOT EXISTS "${CASE}/expected/${file}")
    message(FATAL_ERROR "${CASE}/expected lacks ${file}")
  endif()
endforeach()
message("${comparison}")
