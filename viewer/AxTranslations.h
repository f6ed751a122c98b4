#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QLocale>

/// Installs the texts of this library, its companions and Qt in the language of
/// the locale, where they exist (Simplified Chinese). Call it once, on the GUI
/// thread, after the application object was made and before the first widget.
/// Returns how many sets of texts were installed: 0 leaves everything English.
AXEARTHVIEWER_EXPORT int AxInstallTranslations(const QLocale& locale);
