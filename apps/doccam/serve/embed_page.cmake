# Writes the page's files as a C++ source: cmake -DFOLDER=... -DOUTPUT=... -P embed_page.cmake
file(GLOB files RELATIVE ${FOLDER} ${FOLDER}/*)
list(SORT files)
set(type_html "text/html; charset=utf-8")
set(type_css "text/css; charset=utf-8")
set(type_js "text/javascript; charset=utf-8")
set(type_svg "image/svg+xml")

set(arrays "")
set(entries "")
set(number 0)
foreach(name IN LISTS files)
    file(READ ${FOLDER}/${name} bytes HEX)
    string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
    string(APPEND arrays "constexpr char kFile${number}[] = {${bytes}};\n")
    get_filename_component(ending ${name} LAST_EXT)
    string(SUBSTRING ${ending} 1 -1 ending)
    set(path "/${name}")
    if(name STREQUAL "index.html")
        set(path "/")
    endif()
    string(APPEND entries
           "    {\"${path}\", \"${type_${ending}}\", {kFile${number}, sizeof kFile${number}}},\n")
    math(EXPR number "${number} + 1")
endforeach()

file(WRITE ${OUTPUT} "#include \"serve/site/page_files.h\"

namespace doccam::serve {
namespace {

${arrays}
constexpr PageFile kFiles[] = {
${entries}};

} // namespace

std::span<const PageFile> pageFiles() {
    return kFiles;
}

} // namespace doccam::serve
")
