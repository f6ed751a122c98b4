#pragma once
#include "viewer/AxPictureCapture.h"

#include <QString>

#include <memory>
#include <vector>

class CAxEarthViewer;
class QImage;
class QWidget;

/// How the taking of pictures has ended.
struct CaptureEnd
{
    bool isWhole = false;         ///< all were taken
    bool isDetailMissing = false; ///< the map had not loaded all of its detail everywhere
    QString fault;                ///< for people; empty when it is whole, and when the operator has cancelled
};

/// Takes pictures while a box shows how far they are and lets the operator cancel. GUI thread; events run,
/// and the viewer or the window may be gone afterwards.
CaptureEnd RunCapture(CAxEarthViewer& viewer, std::vector<AxShot> shots,
                      std::unique_ptr<AxPictureTaker> taker, const QString& title, QWidget* window);

/// Writes a picture as its name says, as PNG when it says nothing, on a thread of its own while a box is
/// shown. The file that was there is replaced when the new one is whole. What is wrong, for people.
QString WritePicture(const QImage& picture, const QString& file, const QString& title, QWidget* window);
/// Why no file of that name can be written there; nothing is left behind. Any thread.
QString TryFile(const QString& file);
/// Writes it at once, without a box; any thread.
QString WritePictureNow(const QImage& picture, const QString& file);
