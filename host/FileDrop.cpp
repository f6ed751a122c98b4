#include "host/FileDrop.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace {
QStringList FilesOf(const QMimeData* data)
{
    QStringList files;
    for (const QUrl& url : data->urls())
        if (url.isLocalFile())
            files += url.toLocalFile();
    return files;
}
} // namespace

FileDrop::FileDrop(QWidget* window) : QObject(window)
{
    Watch(window);
}

void FileDrop::Watch(QWidget* widget)
{
    widget->setAcceptDrops(true);
    widget->installEventFilter(this);
}

void FileDrop::Add(Wants wants, Open open)
{
    takers.push_back({std::move(wants), std::move(open)});
}

std::vector<QStringList> FileDrop::Share(const QStringList& files) const
{
    std::vector<QStringList> shares(takers.size());
    for (const QString& file : files) {
        const auto taker =
            std::find_if(takers.begin(), takers.end(), [&file](const Taker& one) { return one.wants(file); });
        if (taker != takers.end())
            shares[static_cast<std::size_t>(taker - takers.begin())] += file;
    }
    return shares;
}

bool FileDrop::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    auto* drop = static_cast<QDropEvent*>(event); // the others derive from it
    const std::vector<QStringList> shares = Share(FilesOf(drop->mimeData()));
    const bool isWanted =
        std::any_of(shares.begin(), shares.end(), [](const QStringList& share) { return !share.isEmpty(); });
    // A box that waits for an answer must not be overtaken.
    if (!isWanted || QApplication::activeModalWidget()) {
        drop->ignore();
        return true;
    }
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    if (type != QEvent::Drop)
        return true;
    // The program that the files come from waits until this returns.
    // Boxes of one taker let events run: the next has to wait until it has done.
    QTimer::singleShot(0, this, [turns = takers, shares] {
        for (std::size_t i = 0; i < turns.size(); ++i)
            if (!shares[i].isEmpty() && !turns[i].open(shares[i]))
                return;
    });
    return true;
}
