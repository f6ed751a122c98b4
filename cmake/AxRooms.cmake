# The library AxEarthViewer is built room by room. A room is a folder at the top; it sees its own
# headers and those of the rooms below it, and no others: the compiler is given a folder for each of
# these rooms, in which "scene/base/AxNotice.h" leads to the header of that name in the source tree.
set(AX_ROOMS_DIR "${CMAKE_BINARY_DIR}/rooms")
set(AX_ROOM_PCH <QGraphicsView> <QGLWidget> <osgViewer/Viewer> <osg/Group>)

# ax_lead_to(FILE HEADER): a header that includes another one by its path.
function(ax_lead_to file header)
  file(CONFIGURE OUTPUT "${file}" CONTENT "#include \"${header}\"\n" @ONLY)
endfunction()

# ax_room_headers(NAME): the folder that makes the headers of a room visible.
function(ax_room_headers name)
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/${name}/*.h")
  foreach(header IN LISTS headers)
    ax_lead_to("${AX_ROOMS_DIR}/${name}/${header}" "${PROJECT_SOURCE_DIR}/${header}")
  endforeach()
endfunction()

# ax_common_room(TARGET): what all rooms are compiled with.
function(ax_common_room target)
  target_compile_definitions(${target} PRIVATE AXEARTHVIEWER_LIBRARY QT_STATICPLUGIN)
  target_link_libraries(${target} PRIVATE AxEarth AxData AxBaseUI Qt5::Widgets Qt5::OpenGL Qt5::TextToSpeech GEOS::geos_c)
endfunction()

# ax_room(NAME [BELOW rooms...]): the objects of one room, which may include the headers of the rooms below.
function(ax_room name)
  cmake_parse_arguments(ARG "" "" "BELOW" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${name}/*.cpp" "${PROJECT_SOURCE_DIR}/${name}/*.h")
  set(target AxRoom_${name})
  add_library(${target} OBJECT ${sources})
  ax_unite(${target})
  ax_common(${target})
  ax_common_room(${target})
  ax_room_headers(${name})
  foreach(room IN LISTS ARG_BELOW ITEMS ${name})
    target_include_directories(${target} PRIVATE "${AX_ROOMS_DIR}/${room}")
  endforeach()
  if(NOT AX_COVERAGE)
    if(ARG_BELOW)
      target_precompile_headers(${target} REUSE_FROM AxRoom_scene)
    else()
      target_precompile_headers(${target} PRIVATE ${AX_ROOM_PCH})
    endif()
  endif()
endfunction()
