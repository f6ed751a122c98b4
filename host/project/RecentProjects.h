#pragma once
#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

class QMenu;

/// The project files that were open, the last one first, and their menu. GUI thread; owned by its parent.
class RecentProjects : public QObject
{
    Q_OBJECT
public:
    explicit RecentProjects(QObject* parent) : QObject(parent) {}

    /// The menu outlives it; nothing can be chosen before Enable().
    void SetMenu(QMenu* ofFiles);
    void Enable();

    void Add(const QString& file);
    void Remove(const QString& file);
    QString Last() const { return files.isEmpty() ? QString() : files.constFirst(); }

    /// As bytes to be kept; what cannot be read is no file.
    QByteArray Bytes() const;
    void SetBytes(const QByteArray& kept);

signals:
    void Chosen(const QString& file); ///< it may be gone
    void Changed();

private:
    void List();

    QStringList files;
    QMenu* menu = nullptr;
    bool isEnabled = false;
};
