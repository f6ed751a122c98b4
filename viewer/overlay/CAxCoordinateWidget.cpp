#include "viewer/overlay/CAxCoordinateWidget.h"
#include "scene/base/AxFonts.h"

#include <QFontMetrics>
#include <QGridLayout>
#include <QMouseEvent>

#include <algorithm>

namespace {
constexpr int labelMargin = 5;
constexpr int columnGap = 6;
constexpr int largestTextPixels = 12;
constexpr int smallestTextPixels = 8;
constexpr std::size_t cells = 4;
constexpr int heightOfTexts = 48;
constexpr int heightOfSystem = 18;

bool IsDigit(QChar letter)
{
    return letter >= QLatin1Char('0') && letter <= QLatin1Char('9');
}

// A font's digits have one width, so most new values leave the panel as it is.
bool HasSameWidth(const QString& one, const QString& other)
{
    return std::equal(one.cbegin(), one.cend(), other.cbegin(), other.cend(),
                      [](QChar a, QChar b) { return a == b || (IsDigit(a) && IsDigit(b)); });
}

QLabel* NewLabel(QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setStyleSheet(
        QStringLiteral("background-color: rgba(255, 255, 255, 0);\ncolor:rgb(255, 255, 255);"));
    label->setTextFormat(Qt::PlainText);
    return label;
}
} // namespace

CAxCoordinateWidget::CAxCoordinateWidget(QWidget* parent) : CAxBaseWidget(parent)
{
    setObjectName(QStringLiteral("CAxCoordinateWidget"));
    setWindowTitle(tr("Form"));
    setWindowOpacity(0.8);
    EnableMove(false);
    resize(294, heightOfTexts);
    setFixedHeight(heightOfTexts);
    QFont family = font();
    family.setFamily(AxOverlayFontFamily());
    family.setPixelSize(largestTextPixels);
    setFont(family);
    setStyleSheet(QStringLiteral("background-color: rgb(0, 0, 0);"));

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(labelMargin, labelMargin, labelMargin, labelMargin);
    grid->setHorizontalSpacing(columnGap);
    grid->setVerticalSpacing(0);
    for (std::size_t cell = 0; cell < labels.size(); ++cell) {
        labels[cell] = NewLabel(this);
        grid->addWidget(labels[cell], static_cast<int>(cell / 2), static_cast<int>(cell % 2));
    }
    FitTexts();
}

void CAxCoordinateWidget::SetCoordinate(const QString& longitude, const QString& latitude,
                                        const QString& altitude, const QString& range)
{
    const std::array<const QString*, cells> texts{&longitude, &latitude, &altitude, &range};
    bool fits = true;
    for (std::size_t cell = 0; cell < cells; ++cell) {
        const QString shown = labels[cell]->text();
        if (shown == *texts[cell])
            continue;
        fits = fits && HasSameWidth(shown, *texts[cell]);
        labels[cell]->setText(*texts[cell]);
    }
    if (!fits)
        FitTexts();
}

void CAxCoordinateWidget::SetSystem(const QString& name)
{
    // It stands on the lower edge of the map.
    const int bottom = y() + height();
    if (name.isEmpty()) {
        delete system;
        system = nullptr;
    } else if (!system) {
        system = NewLabel(this);
        static_cast<QGridLayout*>(layout())->addWidget(system, 2, 0, 1, 2);
    }
    if (system) {
        const int inner = width() - 2 * labelMargin;
        QFont fitted = font();
        for (int pixels = largestTextPixels; pixels >= smallestTextPixels; --pixels) {
            fitted.setPixelSize(pixels);
            if (QFontMetrics(fitted).horizontalAdvance(name) <= inner)
                break;
        }
        system->setFont(fitted);
        system->setFixedSize(inner, heightOfSystem);
        system->setText(QFontMetrics(fitted).elidedText(name, Qt::ElideRight, inner));
        system->show();
    }
    const int wanted = heightOfTexts + (system ? heightOfSystem : 0);
    if (wanted == height())
        return;
    // Else the layout would make it higher by itself, downwards and later.
    setFixedHeight(wanted);
    move(x(), bottom - wanted);
}

void CAxCoordinateWidget::mousePressEvent(QMouseEvent* event)
{
    event->accept();
}

// English texts with long numbers are wider than the panel in the usual size.
void CAxCoordinateWidget::FitTexts()
{
    std::array<QString, cells> widest;
    for (std::size_t cell = 0; cell < cells; ++cell) {
        widest[cell] = labels[cell]->text();
        for (QChar& letter : widest[cell])
            if (IsDigit(letter))
                letter = QLatin1Char('0');
    }
    const int inner = width() - 2 * labelMargin - columnGap;
    QFont fitted = font();
    int left = 0;
    int right = 0;
    for (int pixels = largestTextPixels; pixels >= smallestTextPixels; --pixels) {
        fitted.setPixelSize(pixels);
        const QFontMetrics metrics(fitted);
        const auto column = [&widest, &metrics](std::size_t first) {
            return qMax(metrics.horizontalAdvance(widest[first]),
                        metrics.horizontalAdvance(widest[first + 2]));
        };
        left = column(0);
        right = column(1);
        if (left + right <= inner)
            break;
    }
    // Half of the panel each, unless one column needs more. Of a fixed size,
    // because any other label has the panel laid out anew with each text.
    left = qBound(1, qMax(left, qMin(inner / 2, inner - right)), inner - 1);
    const int lineHeight = (heightOfTexts - 2 * labelMargin) / 2;
    for (std::size_t cell = 0; cell < cells; ++cell) {
        if (fitted.pixelSize() != labels[cell]->font().pixelSize())
            labels[cell]->setFont(fitted);
        labels[cell]->setFixedSize(cell % 2 == 0 ? left : inner - left, lineHeight);
    }
}
