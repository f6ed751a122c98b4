# AX_EARTH=system: the target AxEarth stands for an installed osgEarth 2.8, which
# comes without a CMake package of its own. OSGEARTH_DIR names where it is.
find_path(OSGEARTH_INCLUDE_DIR osgEarth/MapNode HINTS "${OSGEARTH_DIR}" PATH_SUFFIXES include REQUIRED)
add_library(AxEarth INTERFACE)
target_include_directories(AxEarth SYSTEM INTERFACE $<BUILD_INTERFACE:${OSGEARTH_INCLUDE_DIR}>)
foreach(part osgEarth osgEarthUtil osgEarthAnnotation osgEarthFeatures osgEarthSymbology)
  find_library(${part}_LIBRARY ${part} HINTS "${OSGEARTH_DIR}" PATH_SUFFIXES lib lib64 REQUIRED)
  target_link_libraries(AxEarth INTERFACE "${${part}_LIBRARY}")
endforeach()
target_link_libraries(AxEarth INTERFACE AxOsg)
