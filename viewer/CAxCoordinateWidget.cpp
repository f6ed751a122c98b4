#include "viewer/CAxCoordinateWidget.h"
#include "viewer/AxFonts.h"

#include <QGridLayout>

CAxCoordinateWidget::CAxCoordinateWidget(QWidget* parent) : CAxBaseWidget(parent)
{
    setObjectName(QStringLiteral("CAxCoordinateWidget"));
    setWindowTitle(tr("Form"));
    setWindowOpacity(0.8);
    resize(294, 48);
    QFont family = font();
    family.setFamily(AxOverlayFontFamily());
    setFont(family);
    setStyleSheet(QStringLiteral("background-color: rgb(0, 0, 0);"));

    auto* grid = new QGridLayout(this);
    for (std::size_t cell = 0; cell < labels.size(); ++cell) {
        labels[cell] = new QLabel(this);
        labels[cell]->setStyleSheet(
            QStringLiteral("background-color: rgba(255, 255, 255, 0);\ncolor:rgb(255, 255, 255);"));
        grid->addWidget(labels[cell], static_cast<int>(cell / 2), static_cast<int>(cell % 2));
    }
}

void CAxCoordinateWidget::SetCoordinate(const QString& longitude, const QString& latitude,
                                        const QString& altitude, const QString& range)
{
    labels[0]->setText(longitude);
    labels[1]->setText(latitude);
    labels[2]->setText(altitude);
    labels[3]->setText(range);
}
