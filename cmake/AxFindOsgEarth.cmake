# An installed osgEarth 2.8, which comes without a CMake package of its own. OSGEARTH_DIR, as a variable or in
# the environment, names where it is. Sets OSGEARTH_FOUND, OSGEARTH_INCLUDE_DIR and OSGEARTH_LIBRARIES. The
# build reads it, and so does the installed package, on the machine that uses it.
find_path(OSGEARTH_INCLUDE_DIR osgEarth/MapNode HINTS "${OSGEARTH_DIR}" ENV OSGEARTH_DIR PATH_SUFFIXES include)
set(OSGEARTH_FOUND TRUE)
if(NOT OSGEARTH_INCLUDE_DIR)
  set(OSGEARTH_FOUND FALSE)
endif()
set(OSGEARTH_LIBRARIES "")
foreach(part osgEarth osgEarthUtil osgEarthAnnotation osgEarthFeatures osgEarthSymbology)
  find_library(${part}_LIBRARY ${part} HINTS "${OSGEARTH_DIR}" ENV OSGEARTH_DIR PATH_SUFFIXES lib lib64)
  if(NOT ${part}_LIBRARY)
    set(OSGEARTH_FOUND FALSE)
  endif()
  list(APPEND OSGEARTH_LIBRARIES "${${part}_LIBRARY}")
endforeach()
set(OSGEARTH_MISSING "There is no osgEarth 2.8; OSGEARTH_DIR names the folder of its include and lib folders.")
