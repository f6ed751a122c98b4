# Installs the build into a fresh folder, builds the example host of the
# documents against what was installed, and starts it.
# In: SOURCE_DIR, BUILD_DIR, GENERATOR, FLAGS (the sanitizers of the build)
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
file(GLOB_RECURSE package "${work}/prefix/lib*/cmake/*.cmake")
foreach(file IN LISTS package)
  file(READ "${file}" text)
  string(FIND "${text}" "${SOURCE_DIR}/" position)
  if(NOT position EQUAL -1)
    message(FATAL_ERROR "${file} names the source folder")
  endif()
endforeach()
# Moved after installing: nothing may depend on the prefix either.
file(RENAME "${work}/prefix" "${work}/moved")

run("${CMAKE_COMMAND}" -S "${SOURCE_DIR}/tests/install/host" -B "${work}/host" -G "${GENERATOR}"
  "-DCMAKE_PREFIX_PATH=${work}/moved" "-DCMAKE_CXX_FLAGS=${FLAGS}" -DCMAKE_BUILD_TYPE=Debug)
run("${CMAKE_COMMAND}" --build "${work}/host")

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
