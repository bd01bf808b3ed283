# What is done to the texts of the archive once they are in their place. Their lines end in \r\n: Notepad knows no other
# end before Windows 10 1809. Of a link to what is not packed (tests, benchmarks, sources of the viewer) its text stays.
set(top "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")

function(drop_dangling_links page textName)
  get_filename_component(folder ${page} DIRECTORY)
  string(REPLACE "](" "<to>" marked "${${textName}}") # lists keep what stands between brackets together
  string(REGEX MATCHALL "<to>[^)# \n]+" targets "${marked}")
  list(REMOVE_DUPLICATES targets)
  foreach(target ${targets})
    string(REPLACE "<to>" "" target ${target})
    if(NOT target MATCHES "^[a-z]+:" AND NOT EXISTS ${folder}/${target})
      string(REGEX REPLACE "([.+*?^$()|])" "\\\\\\1" pattern ${target})
      string(REGEX REPLACE "\\[([^][]*)\\]\\(${pattern}(#[^)]*)?\\)" "\\1" ${textName} "${${textName}}")
    endif()
  endforeach()
  set(${textName} "${${textName}}" PARENT_SCOPE)
endfunction()

file(GLOB_RECURSE texts ${top}/docs/*.md ${top}/examples/*.md ${top}/examples/*.txt ${top}/licences/*.txt)
foreach(file ${texts})
  file(READ ${file} text)
  if(file MATCHES "\\.md$")
    drop_dangling_links(${file} text)
  endif()
  string(REPLACE "\r\n" "\n" text "${text}")
  string(REPLACE "\n" "\r\n" text "${text}")
  file(WRITE ${file} "${text}")
endforeach()
