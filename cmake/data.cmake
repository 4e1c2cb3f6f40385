# SPDX-License-Identifier: MIT
# The programs look for their configuration beside their own executable, so the build tree holds a
# copy there. A copy, not a link: a user's edit of the build tree must not change the sources.
foreach(directory JournalStyles LaTeXCommands JournalStrings)
  file(GLOB files CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/data
       ${PROJECT_SOURCE_DIR}/data/${directory}/*.tvl)
  foreach(file ${files})
    configure_file(${PROJECT_SOURCE_DIR}/data/${file} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${file}
                   COPYONLY)
  endforeach()
endforeach()
