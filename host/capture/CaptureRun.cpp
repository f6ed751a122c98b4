#include "host/capture/CaptureRun.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/CAxProgressWgt.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QPointer>
#include <QSaveFile>
#include <QScopeGuard>
#include <QTemporaryFile>

#include <future>
#include <optional>

namespace {
class Tr
{
    Q_DECLARE_TR_FUNCTIONS(CaptureMenu)
};

constexpr int percentWhole = 100;

QString Named(const QString& file, const QString& reason)
{
    return Tr::tr("\"%1\": %2").arg(QDir::toNativeSeparators(file), reason);
}

// Of what a full disk takes a part the system tells why only with the next piece, and a QSaveFile takes none.
QString Reason(const QSaveFile& file, const QImageWriter& writer)
{
    constexpr int pieceSize = 64 * 1024;
    const QByteArray piece(pieceSize, '\0');
    QTemporaryFile next(QFileInfo(file.fileName()).dir().filePath(QStringLiteral("XXXXXX")));
    if (file.error() != QFileDevice::NoError && next.open() && next.write(piece) >= 0)
        next.write(piece);
    if (next.error() != QFileDevice::NoError)
        return next.errorString();
    return file.error() != QFileDevice::NoError ? file.errorString() : writer.errorString();
}

/// What is being written cannot be broken off.
class WritingBox : public CAxProgressWgt
{
public:
    using CAxProgressWgt::CAxProgressWgt;
    void reject() override {}
};
} // namespace

CaptureEnd RunCapture(CAxEarthViewer& viewer, std::vector<AxShot> shots,
                      std::unique_ptr<AxPictureTaker> taker, const QString& title, QWidget* window)
{
    CaptureEnd end;
    const QPointer<AxPictureCapture> capture = viewer.GetPictureCapture();
    const int count = static_cast<int>(shots.size());
    CAxProgressWgt box(title, window);
    box.SetMaxValue(percentWhole);
    box.SetText(Tr::tr("The map is loaded in the detail of the picture..."));
    box.VisibleBtnCannel(true);
    std::optional<QString> fault;
    QObject::connect(capture, &AxPictureCapture::progress, &box, [&](int percent, int picture) {
        box.SetValue(qMin(percent, percentWhole - 1)); // it ends with the last file, not with the last part
        if (count > 1)
            box.SetText(Tr::tr("Picture %1 of %2").arg(picture + 1).arg(count));
    });
    QObject::connect(capture, &AxPictureCapture::finished, &box, [&](const QString& why) {
        fault = why;
        box.accept();
    });
    QObject::connect(capture, &QObject::destroyed, &box, &QDialog::reject);
    if (!capture->Begin(std::move(shots), std::move(taker), &end.fault))
        return end;
    box.exec();
    if (capture && capture->IsBusy())
        capture->Cancel();
    end.fault = fault.value_or(QString());
    end.isWhole = fault && fault->isEmpty();
    end.isDetailMissing = capture && capture->IsDetailMissing();
    return end;
}

QString TryFile(const QString& file)
{
    QSaveFile out(file);
    return out.open(QIODevice::WriteOnly) ? QString() : Named(file, out.errorString());
}

QString WritePictureNow(const QImage& picture, const QString& file)
{
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly))
        return Named(file, out.errorString());
    const QString suffix = QFileInfo(file).suffix();
    QImageWriter writer(&out, suffix.isEmpty() ? QByteArrayLiteral("png") : suffix.toLatin1());
    constexpr int good = 92;
    constexpr int quick =
        75; // nothing is lost by it: the file is a tenth larger, and written in half the time
    writer.setQuality(writer.format() == "png" ? quick : good);
    if (!writer.write(picture) || !out.flush())
        return Named(file, Reason(out, writer));
    return out.commit() ? QString() : Named(file, out.errorString());
}

QString WritePicture(const QImage& picture, const QString& file, const QString& title, QWidget* window)
{
    WritingBox box(title, window);
    box.SetText(Tr::tr("%1 is written...").arg(QFileInfo(file).fileName()));
    std::future<QString> written = std::async(std::launch::async, [&box, picture, file] {
        const auto end = qScopeGuard([&box] {
            QMetaObject::invokeMethod(
                &box, [&box] { box.accept(); }, Qt::QueuedConnection);
        });
        return WritePictureNow(picture, file);
    });
    // No loop runs any more where the program is ended meanwhile.
    box.exec();
    return written.get();
}
