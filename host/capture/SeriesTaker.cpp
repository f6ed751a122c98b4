#include "host/capture/SeriesTaker.h"
#include "host/capture/CaptureRun.h"

#include <QFileInfo>

#include <algorithm>

namespace {
QStringList NumberedNames(const QString& file, std::size_t count)
{
    constexpr int digits = 4;
    const QFileInfo info(file);
    const QString stem = info.path() + QLatin1Char('/') + info.completeBaseName();
    const QString suffix = info.suffix().isEmpty() ? QStringLiteral("png") : info.suffix();
    QStringList names;
    for (int i = 1; i <= static_cast<int>(count); ++i)
        names += QStringLiteral("%1_%2.%3").arg(stem).arg(i, digits, 10, QLatin1Char('0')).arg(suffix);
    return names;
}

std::vector<QSize> SizesOf(const std::vector<AxShot>& shots)
{
    std::vector<QSize> sizes;
    for (const AxShot& shot : shots)
        sizes.push_back(shot.size);
    return sizes;
}
} // namespace

SeriesTaker::SeriesTaker(const QString& file, const std::vector<AxShot>& shots, std::shared_ptr<int> written)
    : SeriesTaker(NumberedNames(file, shots.size()), shots, written)
{
}

SeriesTaker::SeriesTaker(const QStringList& names, const std::vector<AxShot>& shots,
                         const std::shared_ptr<int>& written)
    : AxImageTaker(SizesOf(shots),
                   [names, written](int picture, QImage&& whole) {
                       const QString fault = WritePictureNow(whole, names[picture]);
                       *written += fault.isEmpty() ? 1 : 0;
                       return fault;
                   }),
      files(names)
{
}

int SeriesTaker::CountThere() const
{
    return static_cast<int>(std::count_if(files.begin(), files.end(),
                                          [](const QString& name) { return QFileInfo::exists(name); }));
}

MapPictureTaker::MapPictureTaker(const QString& file, const AxShotGround& ground, const QSize& size)
    : writer(file, {{ground.middle.x(), ground.middle.y()},
                    ground.middle.z(),
                    ground.width / std::max(1, size.width()),
                    size.width(),
                    size.height()})
{
}

QString MapPictureTaker::Take(int, const QPoint& at, const QImage& part)
{
    return writer.Write(at.x(), at.y(), part.width(), part.height(), part.constBits(), part.bytesPerLine());
}

QString MapPictureTaker::Finish(int)
{
    return writer.Finish();
}
