#pragma once
#include <AxBaseUI/CAxBaseDialog.h>

#include <QSize>

class LimitedNumber;
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
    /// How much memory the picture needs, for people.
    static QString Told(const QSize& size);

private:
    void Follow();

    QComboBox* usual;
    LimitedNumber* width;
    LimitedNumber* height;
    QLabel* told;
};
