# Makes a header with one stamp over all sources, so that equal sources give equal stamps: run with
# -DFOLDER=<sources> -DHEADER=<header> -DDEPFILE=<depfile> -P.
# The depfile names every file that was read: the build asks for a new stamp when one of them changes, and only then.
# A new source is always named in a CMakeLists.txt, which is among them.

cmake_minimum_required(VERSION 3.25)
file(GLOB_RECURSE files RELATIVE ${FOLDER} ${FOLDER}/*)
list(FILTER files EXCLUDE REGEX "(^|/)[.#]|~$")
list(SORT files)
set(text "")
set(dependencies "")
foreach(file IN LISTS files)
    file(SHA256 ${FOLDER}/${file} hash)
    string(APPEND text "${file} ${hash}\n")
    string(REPLACE " " "\\ " escaped "${FOLDER}/${file}")
    string(APPEND dependencies " \\\n  ${escaped}")
endforeach()
string(SHA256 stamp "${text}")
file(CONFIGURE OUTPUT ${HEADER} @ONLY CONTENT
    "#pragma once\n\n/// Changes with every change of the sources.\ninline constexpr char sourceStamp[] = \"@stamp@\";\n")
file(WRITE ${DEPFILE} "${HEADER}:${dependencies}\n")
