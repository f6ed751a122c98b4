#pragma once
#include <AxBaseUI/CAxBaseDialog.h>

#include <QSize>

class LimitedNumber;
class QCheckBox;
class QComboBox;
class QLabel;

/// Asks how large a picture of the map is to be, in pixels. GUI thread.
class PictureBox : public CAxBaseDialog
{
    Q_OBJECT
public:
    /// `shown`: what the window shows, which is proposed.
    PictureBox(const QSize& shown, QWidget* parent);

    QSize Size() const;
    /// Whether texts and lines are to be as large in the picture as in the window, not in pixels.
    bool IsScaled() const;

private:
    /// How much memory the picture needs, for people.
    static QString Told(const QSize& size);
    void Follow();
    void KeepShape(bool fromWidth);

    const QSize map;
    QComboBox* usual;
    LimitedNumber* width;
    LimitedNumber* height;
    QCheckBox* keepsShape;
    QComboBox* texts;
    QLabel* told;
};
