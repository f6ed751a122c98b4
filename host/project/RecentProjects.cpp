#include "host/project/RecentProjects.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMenu>

namespace {
constexpr int mostRecent = 8;
}

void RecentProjects::SetMenu(QMenu* ofFiles)
{
    menu = ofFiles;
    List();
}

void RecentProjects::Enable()
{
    isEnabled = true;
    List();
}

void RecentProjects::Add(const QString& file)
{
    const QString whole = QFileInfo(file).absoluteFilePath();
    files.removeAll(whole);
    files.prepend(whole);
    files = files.mid(0, mostRecent);
    List();
    emit Changed();
}

void RecentProjects::Remove(const QString& file)
{
    files.removeAll(file);
    List();
    emit Changed();
}

QByteArray RecentProjects::Bytes() const
{
    return QJsonDocument(QJsonArray::fromStringList(files)).toJson(QJsonDocument::Compact);
}

void RecentProjects::SetBytes(const QByteArray& kept)
{
    files.clear();
    for (const QJsonValue file : QJsonDocument::fromJson(kept).array())
        if (!file.toString().isEmpty() && files.size() < mostRecent)
            files += file.toString();
    List();
}

void RecentProjects::List()
{
    if (!menu)
        return;
    menu->clear();
    menu->setEnabled(isEnabled && !files.isEmpty());
    for (int i = 0; i < files.size(); ++i) {
        QString text = QDir::toNativeSeparators(files[i]);
        text.replace(QLatin1Char('&'), QLatin1String("&&"));
        menu->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(text), this,
                        [this, file = files[i]] { emit Chosen(file); });
    }
}
