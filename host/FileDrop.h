#pragma once
#include <QObject>
#include <QStringList>

#include <functional>
#include <vector>

class QWidget;

/// Files that are dropped on the window or its map. Who opens files of some kind says so; of several that
/// want a file, the first gets it. What nobody wants is not let go of. Owned by the window; GUI thread.
class FileDrop : public QObject
{
    Q_OBJECT
public:
    explicit FileDrop(QWidget* window);
    /// Where files are dropped besides; it need not be the window's own child.
    void Watch(QWidget* widget);

    using Wants = std::function<bool(const QString& file)>;
    /// False when the pilot has given it up, or it was refused: what else was dropped is left then.
    using Open = std::function<bool(const QStringList& files)>;
    /// `open` is called when the drop is over, with all the files that `wants` has taken; where several have
    /// taken some, one after the other, in the order in which they were added.
    void Add(Wants wants, Open open);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// The files of each taker, in their order.
    std::vector<QStringList> Share(const QStringList& files) const;

    struct Taker
    {
        Wants wants;
        Open open;
    };
    std::vector<Taker> takers;
};
