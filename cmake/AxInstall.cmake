# What `cmake --install` puts where: headers under include/AxEarthViewer, the
# libraries, the host with the maps beside it, and a CMake package.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/AxEarthViewer")
set(installed AxOsg)
list(APPEND installed AxAlgorthm AxData AxBaseUI AxTelemetry AxEarth AxEarthViewer)
install(TARGETS ${installed} EXPORT AxEarthViewerTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT AxEarthViewerTargets NAMESPACE AxEarthViewer:: DESTINATION ${package_dir})

# Nothing installed knows where it was built or installed: the libraries find
# each other beside themselves, the host finds them from its own folder.
file(RELATIVE_PATH bin_to_lib "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
foreach(target IN LISTS installed)
  if(NOT target STREQUAL "AxOsg")
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
  endif()
endforeach()
set_target_properties(AxGroundControl axnofly axtiles PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")

# ./ax docs installs the headers alone, so they are a component of their own.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME headers)
# Headers that only the library itself and its tests need.
set(inner "AxDisk|AxOpenedInPlace|AxPrivateFolder|AxReplaceFile|AxZoneQuery")
string(APPEND inner "|AxGroundSpeed|AxHomeLegs|AxPassLayout|AxPassOrder|AxPlanAltitudes|AxPlanCheck|AxPlaneArea")
string(APPEND inner "|AxPhotoSight|AxPlanPasses|AxRouteHeights|AxWayCheck|AxWayRound|AxZonesAround")
string(APPEND inner "|AxTelemetryLog|AxMavCandidate|AxMavChecksum|AxMavSigning|AxMavTrust|AxMavWire")
string(APPEND inner "|AxMissionItems|AxSampleClock|AxStatusTexts|AxVehicleCamera|AxVehicleKinds|AxVehicleModes")
string(APPEND inner "|AxVehiclePlaces|AxVehicleText|AxLinkText|AxCsvColumns|AxRecordText|AxSeaLevel|AxTlogClock|AxTlogFlight")
string(APPEND inner "|AxSimulatedAutopilot|AxSimulatedBody|AxSimulatedExchange|AxSimulatedFlight|AxSimulatedGuide|AxSimulatedMission")
string(APPEND inner "|AxProjectFields|AxProjectTables|AxProjectValues|AxRecoveryWriter|AxSqlFile")
string(APPEND inner "|AxGeoCollector|AxGeoFields|AxGeoKml|AxGeoOpen|AxGeoSession|AxGeoSimplify|AxGeoSystem|AxGeoTable|AxGeoText|AxGeoWriters")
string(APPEND inner "|AxTileAsker|AxTileFile|AxTilePace|AxTilePicture|AxTileText|AxTileWalk")
foreach(folder companion/AxAlgorthm companion/AxData companion/AxBaseUI companion/AxTelemetry)
  get_filename_component(name ${folder} NAME)
  install(DIRECTORY ${folder}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${name} FILES_MATCHING
    REGEX "/(${inner})\\.h$" EXCLUDE PATTERN "*.h")
endforeach()
install(FILES "${AX_GENERATED_DIR}/AxTelemetry/mavlink/AxMavMessages.h"
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/AxTelemetry/mavlink)
if(AX_EARTH STREQUAL "bundled")
  install(DIRECTORY earth/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endif()
# Of the viewer library only the classes that hosts use, where they live and by their documented paths.
foreach(entry IN LISTS AX_PUBLIC_HEADERS)
  string(REGEX REPLACE ".*=" "" header "${entry}")
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
endforeach()
install(DIRECTORY "${AX_DOCUMENTED_DIR}/" DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
unset(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME)

configure_package_config_file(cmake/AxEarthViewerConfig.cmake.in AxEarthViewerConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(AxEarthViewerConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/AxEarthViewerConfig.cmake"
  "${CMAKE_CURRENT_BINARY_DIR}/AxEarthViewerConfigVersion.cmake" DESTINATION ${package_dir})
if(AX_EARTH STREQUAL "system")
  install(FILES cmake/AxFindOsgEarth.cmake DESTINATION ${package_dir})
endif()
install(FILES LICENSE NOTICE DESTINATION ${CMAKE_INSTALL_DOCDIR})
