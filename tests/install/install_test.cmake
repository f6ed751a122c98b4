# Installs the build into a fresh folder, builds the example host of the
# documents and every header against what was installed, and starts the host.
# Then the same for a package that was made with an installed osgEarth.
# In: SOURCE_DIR, BUILD_DIR, GENERATOR, FLAGS (the sanitizers of the build),
# CONFIG (its configuration), LAUNCHER (of the compiler, or nothing)
set(work "${BUILD_DIR}/tests/install")
file(REMOVE_RECURSE "${work}")

function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGV}\nended with ${status}:\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${work}/prefix")
# A package that knows where it was built would work here and nowhere else.
function(check_names_not folder)
  file(GLOB_RECURSE package "${work}/prefix/lib*/cmake/*.cmake" "${work}/moved/lib*/cmake/*.cmake")
  foreach(file IN LISTS package)
    file(READ "${file}" text)
    string(FIND "${text}" "${folder}/" position)
    if(NOT position EQUAL -1)
      message(FATAL_ERROR "${file} names ${folder}")
    endif()
  endforeach()
endfunction()
check_names_not("${SOURCE_DIR}")
# Moved after installing: nothing may depend on the prefix either.
file(RENAME "${work}/prefix" "${work}/moved")

function(configure_host folder)
  run("${CMAKE_COMMAND}" -S "${SOURCE_DIR}/tests/install/host" -B "${folder}" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${work}/moved" "-DCMAKE_CXX_FLAGS=${FLAGS}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}"
    -DCMAKE_BUILD_TYPE=Debug ${ARGN})
endfunction()
configure_host("${work}/host")
run("${CMAKE_COMMAND}" --build "${work}/host" --target all headers)

# Leaks are the other suites' business: this host unloads its graphics driver,
# after which nobody can tell the driver's own leaks from ours.
set(ENV{ASAN_OPTIONS} "$ENV{ASAN_OPTIONS}:detect_leaks=0")
run("${work}/host/check" "${work}/moved/bin/google_cn_net_no.earth")

# What the README shows is what was built here.
file(READ "${SOURCE_DIR}/README.md" readme)
file(READ "${SOURCE_DIR}/tests/install/host/main.cpp" example)
string(FIND "${readme}" "${example}" position)
if(position EQUAL -1)
  message(FATAL_ERROR "README.md shows another program than tests/install/host/main.cpp")
endif()

# A package of a build on an installed osgEarth finds that on the machine that uses it, and not where it was on
# the machine that made it.
set(earth "${work}/osgearth-at-home")
file(COPY "${SOURCE_DIR}/earth/include" DESTINATION "${earth}")
foreach(part osgEarth osgEarthUtil osgEarthAnnotation osgEarthFeatures osgEarthSymbology)
  file(WRITE "${earth}/lib/lib${part}.so" "")
endforeach()
run("${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${work}/system" -G "${GENERATOR}" -DCMAKE_BUILD_TYPE=${CONFIG}
  -DAX_EARTH=system "-DOSGEARTH_DIR=${earth}" -DBUILD_TESTING=OFF -DAX_BUILD_BENCH=OFF)
file(RENAME "${earth}" "${work}/osgearth-elsewhere")
file(GLOB_RECURSE targets "${work}/moved/*/AxEarthViewerTargets*.cmake")
list(GET targets 0 package_dir)
get_filename_component(package_dir "${package_dir}" DIRECTORY)
file(REMOVE ${targets})
file(GLOB package "${work}/system/AxEarthViewerConfig*.cmake" "${SOURCE_DIR}/cmake/AxFindOsgEarth.cmake"
  "${work}/system/CMakeFiles/Export/*/AxEarthViewerTargets*.cmake")
file(COPY ${package} DESTINATION "${package_dir}")
check_names_not("${earth}")
configure_host("${work}/host-on-system" "-DOSGEARTH_DIR=${work}/osgearth-elsewhere")
