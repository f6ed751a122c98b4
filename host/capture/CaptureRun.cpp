#include "host/capture/CaptureRun.h"
#include "scene/AxLatestWork.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/CAxProgressWgt.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QPointer>
#include <QSaveFile>

#include <optional>

namespace {
class Tr
{
    Q_DECLARE_TR_FUNCTIONS(CaptureMenu)
};

constexpr int percentWhole = 100;
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

QString WritePictureNow(const QImage& picture, const QString& file)
{
    const QString named = Tr::tr("\"%1\": %2").arg(QDir::toNativeSeparators(file));
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly))
        return named.arg(out.errorString());
    const QString suffix = QFileInfo(file).suffix();
    QImageWriter writer(&out, suffix.isEmpty() ? QByteArrayLiteral("png") : suffix.toLatin1());
    constexpr int good = 92;
    constexpr int quick =
        75; // nothing is lost by it: the file is a tenth larger, and written in half the time
    writer.setQuality(writer.format() == "png" ? quick : good);
    if (!writer.write(picture))
        return named.arg(out.error() != QFileDevice::NoError ? out.errorString() : writer.errorString());
    return out.commit() ? QString() : named.arg(out.errorString());
}

QString WritePicture(const QImage& picture, const QString& file, const QString& title, QWidget* window)
{
    QString fault;
    CAxProgressWgt box(title, window);
    box.SetText(Tr::tr("%1 is written...").arg(QFileInfo(file).fileName()));
    AxLatestWork work;
    bool isDone = false;
    work.Start([picture, file](const std::atomic<bool>&) { return WritePictureNow(picture, file); },
               [&](const QString& wrong) {
                   fault = wrong;
                   isDone = true;
                   box.accept();
               });
    // What is being written cannot be broken off.
    while (!isDone)
        box.exec();
    return fault;
}
