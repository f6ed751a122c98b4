#pragma once
#include <QObject>

#include <functional>

/// Takes the Escape key from the whole program, whichever widget has the keyboard, for something that it
/// ends; never from an open box or menu. Owned by its parent. GUI thread.
class EscapeKey : public QObject
{
    Q_OBJECT
public:
    /// `isMeant` is asked with the key; where it says no, the key goes its way.
    EscapeKey(std::function<bool()> isMeant, std::function<void()> ends, QObject* parent);

    void Watch(bool on); ///< not from the start

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    const std::function<bool()> meant;
    const std::function<void()> end;
};
