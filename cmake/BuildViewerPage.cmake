# Builds the page of SOURCE (viewer/) in BUILD and writes it to RESULT as a C++ array; then STAMP. When that fails, RESULT
# says that there is no page, and STAMP is not written.
#     cmake -D SOURCE=... -D BUILD=... -D NPM=npm -D NODE=node -D EMBED=.../embed-page.mjs -D RESULT=... -D STAMP=...
#           -P BuildViewerPage.cmake
set(copy ${BUILD}/viewer)
set(installed ${BUILD}/installed.json) # the lock file that node_modules was installed by
file(MAKE_DIRECTORY ${copy})

# Sources that are gone must go here too; node_modules stays.
file(GLOB earlier LIST_DIRECTORIES true ${copy}/*)
list(REMOVE_ITEM earlier ${copy}/node_modules)
if(earlier)
  file(REMOVE_RECURSE ${earlier})
endif()
file(GLOB sources LIST_DIRECTORIES true ${SOURCE}/*)
list(REMOVE_ITEM sources ${SOURCE}/node_modules ${SOURCE}/dist ${SOURCE}/tests)
file(COPY ${sources} DESTINATION ${copy})

# The words of a step that failed, and a program without its viewer.
function(give_up step output)
  message(WARNING "The viewer's page was not built; tarnvexo gets no viewer. ${step} said:\n${output}\n"
    "The next build tries again; -DTARNVEXO_VIEWER=OFF leaves the viewer out.")
  execute_process(COMMAND ${NODE} ${EMBED} "" ${RESULT} COMMAND_ERROR_IS_FATAL ANY)
  set(failed TRUE PARENT_SCOPE)
endfunction()

set(failed FALSE)
set(isInstalled 1)
if(EXISTS ${installed} AND EXISTS ${copy}/node_modules)
  execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${installed} ${SOURCE}/package-lock.json
    RESULT_VARIABLE isInstalled OUTPUT_QUIET ERROR_QUIET)
endif()
if(NOT isInstalled EQUAL 0)
  file(REMOVE ${installed})
  # The versions of the lock file. `npm ci` takes no lock file that lacks the packages of other systems, as one does
  # that was made against a mirror without them.
  execute_process(COMMAND ${NPM} install --prefer-offline --no-audit --no-fund --fetch-retries=1
    WORKING_DIRECTORY ${copy} RESULT_VARIABLE exitCode OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT exitCode EQUAL 0)
    give_up("npm install" "${output}")
  else()
    file(COPY_FILE ${SOURCE}/package-lock.json ${installed})
  endif()
endif()
if(NOT failed)
  execute_process(COMMAND ${NPM} run build WORKING_DIRECTORY ${copy}
    RESULT_VARIABLE exitCode OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT exitCode EQUAL 0)
    give_up("npm run build" "${output}")
  endif()
endif()
if(NOT failed)
  execute_process(COMMAND ${NODE} ${EMBED} ${copy}/dist/index.html ${RESULT} COMMAND_ERROR_IS_FATAL ANY)
  file(TOUCH ${STAMP})
endif()
