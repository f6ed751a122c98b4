#include "viewer/CAxCoordinateWidget.h"
#include "viewer/AxFonts.h"

#include <QFontMetrics>
#include <QGridLayout>

namespace {
constexpr int margin = 5;
constexpr int columnGap = 6;
constexpr int largestTextPixels = 12;
constexpr int smallestTextPixels = 8;
} // namespace

CAxCoordinateWidget::CAxCoordinateWidget(QWidget* parent) : CAxBaseWidget(parent)
{
    setObjectName(QStringLiteral("CAxCoordinateWidget"));
    setWindowTitle(tr("Form"));
    setWindowOpacity(0.8);
    resize(294, 48);
    QFont family = font();
    family.setFamily(AxOverlayFontFamily());
    family.setPixelSize(largestTextPixels);
    setFont(family);
    setStyleSheet(QStringLiteral("background-color: rgb(0, 0, 0);"));

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(margin, margin, margin, margin);
    grid->setHorizontalSpacing(columnGap);
    grid->setVerticalSpacing(0);
    for (std::size_t cell = 0; cell < labels.size(); ++cell) {
        labels[cell] = new QLabel(this);
        labels[cell]->setStyleSheet(
            QStringLiteral("background-color: rgba(255, 255, 255, 0);\ncolor:rgb(255, 255, 255);"));
        // The panel keeps its size whatever the texts are.
        labels[cell]->setMinimumSize(1, 1);
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
    FitTexts();
}

// English texts with long numbers are wider than the panel in the usual size.
void CAxCoordinateWidget::FitTexts()
{
    QFont fitted = font();
    for (int pixels = largestTextPixels; pixels >= smallestTextPixels; --pixels) {
        fitted.setPixelSize(pixels);
        const QFontMetrics metrics(fitted);
        const auto column = [this, &metrics](std::size_t first) {
            return qMax(metrics.horizontalAdvance(labels[first]->text()),
                        metrics.horizontalAdvance(labels[first + 2]->text()));
        };
        if (column(0) + columnGap + column(1) <= width() - 2 * margin)
            break;
    }
    if (fitted.pixelSize() == labels[0]->font().pixelSize())
        return;
    for (QLabel* label : labels)
        label->setFont(fitted);
}
