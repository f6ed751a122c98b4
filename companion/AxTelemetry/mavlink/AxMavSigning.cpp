#include "AxMavSigning.h"

#include <QCryptographicHash>
#include <QDateTime>

#include <algorithm>

std::array<quint8, axMavTagSize> AxMavTag(const QByteArray& key, const quint8* frame, int size)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(key);
    hash.addData(reinterpret_cast<const char*>(frame), size);
    const QByteArray digest = hash.result();
    std::array<quint8, axMavTagSize> tag{};
    std::copy_n(digest.begin(), tag.size(), tag.begin());
    return tag;
}

quint64 AxMavSignTimeNow()
{
    constexpr qint64 kStart = 1420070400000; // 2015-01-01 UTC, milliseconds since 1970
    return quint64(qMax(qint64(0), QDateTime::currentMSecsSinceEpoch() - kStart)) * 100;
}
