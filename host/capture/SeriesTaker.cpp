#include "host/capture/SeriesTaker.h"
#include "host/capture/CaptureRun.h"

#include <QFileInfo>

#include <algorithm>
#include <future>
#include <utility>

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

/// One file at a time: more pictures than one would not fit into memory.
class SeriesTaker::Writer
{
public:
    explicit Writer(std::shared_ptr<int> count) : written(std::move(count)) {}
    ~Writer() { End(); }

    /// What was wrong with the former file; the new one is then not begun.
    QString Begin(const QImage& picture, const QString& file)
    {
        QString fault = End();
        if (fault.isEmpty())
            now = std::async(std::launch::async, WritePictureNow, picture, file);
        return fault;
    }
    QString End()
    {
        if (!now.valid())
            return {};
        QString fault = now.get();
        *written += fault.isEmpty() ? 1 : 0;
        return fault;
    }

private:
    const std::shared_ptr<int> written;
    std::future<QString> now;
};

SeriesTaker::SeriesTaker(const QString& file, const std::vector<AxShot>& shots, std::shared_ptr<int> written)
    : SeriesTaker(NumberedNames(file, shots.size()), shots, std::make_shared<Writer>(std::move(written)))
{
}

SeriesTaker::SeriesTaker(const QStringList& names, const std::vector<AxShot>& shots,
                         const std::shared_ptr<Writer>& ofFiles)
    : AxImageTaker(SizesOf(shots),
                   [names, ofFiles](int picture, QImage&& whole) {
                       const QString fault = ofFiles->Begin(whole, names[picture]);
                       const bool isLast = picture == names.size() - 1;
                       return fault.isEmpty() && isLast ? ofFiles->End() : fault;
                   }),
      files(names), writer(ofFiles)
{
}

SeriesTaker::~SeriesTaker() = default;

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

QString MapPictureTaker::Begin()
{
    return writer.Begin();
}

// Compressed here it would hold up the window.
QString MapPictureTaker::Take(int, const QPoint& at, const QImage& part)
{
    QString fault = EndPart();
    if (fault.isEmpty())
        now = std::async(std::launch::async, [this, at, part] {
            return writer.Write(at.x(), at.y(), part.width(), part.height(), part.constBits(),
                                part.bytesPerLine());
        });
    return fault;
}

QString MapPictureTaker::EndPart()
{
    return now.valid() ? now.get() : QString();
}

QString MapPictureTaker::Finish(int)
{
    const QString fault = EndPart();
    return fault.isEmpty() ? writer.Finish() : fault;
}
