# Composes the page of web/ and three.js, and writes it as a C++ file whose PageTemplate() gives it:
#   cmake -DWEB=web -DTHREE=FOLDER -DOUTPUT=page_template.cpp -P cmake/compose_page.cmake

# A data URL of a module, to stand in JSON inside a script element.
function(to_data_url file result)
  file(READ ${file} text)
  # The percent sign comes first, as all others bring one along; then quotation mark, #, <, backslash, line feed.
  foreach(code 25 22 23 3C 5C 0A)
    math(EXPR number 0x${code})
    string(ASCII ${number} character)
    string(REPLACE "${character}" "%${code}" text "${text}")
  endforeach()
  set(${result} "data:text/javascript,${text}" PARENT_SCOPE)
endfunction()

# Import map entries of our modules, page/NAME.js each.
function(make_import_map result)
  file(GLOB modules ${WEB}/src/*.js)
  set(entries "")
  set(separator "")
  foreach(module ${modules})
    get_filename_component(name ${module} NAME)
    to_data_url(${module} url)
    string(APPEND entries "${separator}\"page/${name}\": \"${url}\"")
    set(separator ",\n")
  endforeach()
  set(${result} "${entries}" PARENT_SCOPE)
endfunction()

# Literals of C++ that make up a text together; compilers limit the length of one.
function(to_literals text result)
  set(piece_length 8000)
  string(LENGTH "${text}" length)
  set(literals "")
  foreach(at RANGE 0 ${length} ${piece_length})
    string(SUBSTRING "${text}" ${at} ${piece_length} piece)
    string(APPEND literals "R\"page~(${piece})page~\",\n")
  endforeach()
  set(${result} "${literals}" PARENT_SCOPE)
endfunction()

file(READ ${WEB}/src/page.html page)
file(READ ${WEB}/src/page.css style)
file(READ ${WEB}/three-license.txt license)
file(READ ${THREE}/three.min.js library)
file(READ ${THREE}/examples/js/controls/OrbitControls.js controls)
string(APPEND library "\n${controls}")
# Nothing in the library may end its script element.
string(REPLACE "</script" "<\\/script" library "${library}")
make_import_map(modules)
string(REPLACE "PAGE_STYLE" "${style}" page "${page}")
string(REPLACE "PAGE_LICENSE" "${license}" page "${page}")
string(REPLACE "PAGE_LIBRARY" "${library}" page "${page}")
string(REPLACE "PAGE_MODULES" "${modules}" page "${page}")
if(page MATCHES "[^\t\n -~]")
  message(FATAL_ERROR "The sources of the page are to be in ASCII; this is not: ${CMAKE_MATCH_0}")
endif()
to_literals("${page}" literals)
file(WRITE ${OUTPUT} "// Made by cmake/compose_page.cmake.
#include \"preview/page.h\"

namespace preview {

std::vector<std::string_view> PageTemplate() {
  return {
${literals}};
}

}  // namespace preview
")
