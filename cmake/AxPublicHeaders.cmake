# What hosts include: "<documented path>=<where the header lives>". The documented path stays when a
# header moves; it leads to the header. What is not listed is the library's own business and not installed.
set(AX_PUBLIC_HEADERS
  analysis/AxMapHeights.h=analysis/AxMapHeights.h
  analysis/AxNoflyZones.h=analysis/zones/AxNoflyZones.h
  analysis/AxUserOperation.h=analysis/AxUserOperation.h
  analysis/AxZoneRing.h=analysis/zones/AxZoneRing.h
  analysis/AxZoneShape.h=analysis/zones/AxZoneShape.h
  analysis/CAxAncillaryProcess.h=analysis/CAxAncillaryProcess.h
  analysis/CAxApplyForProhibitedArea.h=interaction/objects/CAxApplyForProhibitedArea.h
  analysis/CAxAreaIntersectOperate.h=analysis/zones/CAxAreaIntersectOperate.h
  analysis/CAxDrapeableNode.h=analysis/CAxDrapeableNode.h
  analysis/CAxElevationQuery.h=analysis/CAxElevationQuery.h
  analysis/AxHeightGrid.h=analysis/elevation/AxHeightGrid.h
  analysis/ModelComputeBounds.h=analysis/models/ModelComputeBounds.h
  analysis/ModelVertexVisitor.h=analysis/models/ModelVertexVisitor.h
  analysis/AxLineOfSight.h=analysis/sight/AxLineOfSight.h
  analysis/AxSightAnalysis.h=analysis/sight/AxSightAnalysis.h
  analysis/AxSightGround.h=analysis/sight/AxSightGround.h
  analysis/AxSightText.h=analysis/sight/AxSightText.h
  analysis/AxViewshed.h=analysis/sight/AxViewshed.h
  analysis/AxVolume.h=analysis/volume/AxVolume.h
  analysis/AxVolumeAnalysis.h=analysis/volume/AxVolumeAnalysis.h
  analysis/AxVolumeGrid.h=analysis/volume/AxVolumeGrid.h
  analysis/AxVolumeText.h=analysis/volume/AxVolumeText.h
  interaction/AxBlockAdapter.h=interaction/objects/AxBlockAdapter.h
  interaction/AxBlockForm.h=interaction/objects/AxBlockForm.h
  interaction/AxBlockOperations.h=interaction/objects/AxBlockOperations.h
  interaction/AxBlockRefusal.h=interaction/objects/AxZonesUnder.h
  interaction/AxLandingReach.h=interaction/objects/AxLandingReach.h
  interaction/AxEditAids.h=scene/AxEditAids.h
  interaction/CAx3DGeometry.h=interaction/objects/CAx3DGeometry.h
  interaction/CAxClampObjectCallback.h=interaction/editing/CAxClampObjectCallback.h
  interaction/CAxDragger.h=interaction/editing/CAxDragger.h
  interaction/CAxEarthManipulator.h=interaction/input/CAxEarthManipulator.h
  interaction/CAxHandleAdapter.h=interaction/objects/CAxHandleAdapter.h
  interaction/CAxHandleAdapterEditor.h=interaction/editing/CAxHandleAdapterEditor.h
  interaction/AxMagnifier.h=interaction/magnifier/AxMagnifier.h
  interaction/CAxOsgDrawMagnifyRectange.h=interaction/magnifier/CAxOsgDrawMagnifyRectange.h
  interaction/AxMeasurement.h=interaction/measure/AxMeasurement.h
  interaction/AxMeasurements.h=interaction/measure/AxMeasurements.h
  interaction/AxModelLayers.h=interaction/models/AxModelLayers.h
  interaction/AxModelPlacement.h=interaction/models/AxModelPlacement.h
  interaction/AxModelSource.h=interaction/models/AxModelSource.h
  interaction/AxStripShape.h=interaction/objects/AxStripShape.h
  interaction/CAxOsgDrawLine.h=interaction/objects/CAxOsgDrawLine.h
  interaction/CAxOsgDrawPointSet.h=interaction/marks/CAxOsgDrawPointSet.h
  interaction/CAxOsgDrawRectange.h=interaction/objects/CAxOsgDrawRectange.h
  interaction/EHandleOperation.h=scene/EHandleOperation.h
  interaction/AxEditedShape.h=interaction/editing/AxEditedShape.h
  interaction/AxVerdict.h=interaction/objects/AxVerdict.h
  mission/CAxUavNode.h=mission/aircraft/CAxUavNode.h
  mission/CAxDownhillAnglenode.h=mission/landing/CAxDownhillAnglenode.h
  mission/CAxInterestPointNode.h=mission/landing/CAxInterestPointNode.h
  mission/CAxLandingAreaNode.h=mission/landing/CAxLandingAreaNode.h
  mission/CAxTaskLable.h=mission/routes/CAxTaskLable.h
  mission/CAxTaskPolygon.h=mission/routes/CAxTaskPolygon.h
  scene/AxLatestWork.h=scene/base/AxLatestWork.h
  scene/AxShapeKind.h=scene/AxShapeKind.h
  scene/AxTaskRoute.h=scene/AxTaskRoute.h
  scene/AxZoneAnswers.h=scene/AxZoneAnswers.h
  viewer/AxEarthViewerExport.h=scene/base/AxEarthViewerExport.h
  viewer/AxGridWidget.h=viewer/overlay/AxGridWidget.h
  viewer/AxHeadUpText.h=viewer/overlay/AxHeadUpText.h
  viewer/AxMapFile.h=viewer/AxMapFile.h
  viewer/AxMapLayers.h=viewer/AxMapLayers.h
  viewer/AxPictureCapture.h=viewer/capture/AxPictureCapture.h
  viewer/AxShot.h=viewer/capture/AxShot.h
  viewer/WindowCaptureCallback.h=viewer/capture/WindowCaptureCallback.h
  viewer/AxSceneLog.h=viewer/AxSceneLog.h
  viewer/AxTranslations.h=viewer/AxTranslations.h
  viewer/AxVolumeFields.h=viewer/overlay/AxVolumeFields.h
  viewer/CAxCoordinateWidget.h=viewer/overlay/CAxCoordinateWidget.h
  viewer/CAxEarthViewer.h=viewer/CAxEarthViewer.h
  viewer/CAxGraphicsCompassItem.h=viewer/overlay/CAxGraphicsCompassItem.h
  viewer/CAxMapToolsWidget.h=viewer/overlay/CAxMapToolsWidget.h
  viewer/CAxTextToSpeech.h=viewer/speech/CAxTextToSpeech.h)

# The documented paths that lead elsewhere, for the build and for the install.
set(AX_DOCUMENTED_DIR "${CMAKE_BINARY_DIR}/documented")
foreach(entry IN LISTS AX_PUBLIC_HEADERS)
  string(REPLACE "=" ";" entry "${entry}")
  list(GET entry 0 documented)
  list(GET entry 1 header)
  if(NOT documented STREQUAL header)
    ax_lead_to("${AX_DOCUMENTED_DIR}/${documented}" "${header}")
  endif()
endforeach()
