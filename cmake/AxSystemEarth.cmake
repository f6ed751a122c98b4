# AX_EARTH=system: the target AxEarth stands for an installed osgEarth 2.8. Where that is on this machine does
# not go into the installed package, which looks for it by itself.
include(AxFindOsgEarth)
if(NOT OSGEARTH_FOUND)
  message(FATAL_ERROR "${OSGEARTH_MISSING}")
endif()
add_library(AxEarth INTERFACE)
target_include_directories(AxEarth SYSTEM INTERFACE $<BUILD_INTERFACE:${OSGEARTH_INCLUDE_DIR}>)
foreach(library IN LISTS OSGEARTH_LIBRARIES)
  target_link_libraries(AxEarth INTERFACE $<BUILD_INTERFACE:${library}>)
endforeach()
target_link_libraries(AxEarth INTERFACE AxOsg)
