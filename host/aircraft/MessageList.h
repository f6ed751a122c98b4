#pragma once
#include <QListWidget>

/// What aircraft and links have said, the newest last, each with its time and in the colour of its severity.
/// What is said again at once is counted. GUI thread.
class MessageList : public QListWidget
{
    Q_OBJECT
public:
    explicit MessageList(QWidget* parent = nullptr);

    /// MAV_SEVERITY; the name may be empty.
    void Add(const QString& who, int severity, const QString& text);
    /// Whether it is in sight, with the newest message.
    bool IsNewestSeen() const;

signals:
    /// The newest message has come into sight.
    void NewestSeen();

protected:
    /// Begins with the newest message.
    void showEvent(QShowEvent* event) override;

private:
    QString last;
    int times = 0;
};
