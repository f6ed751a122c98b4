#include "viewer/overlay/AxColorLegend.h"

#include <QMouseEvent>
#include <QPainter>

namespace {
constexpr int legendMargin = 6;
constexpr int swatchWidth = 18;
constexpr int widestLegend = 240;
constexpr int legendTextPixels = 12;

// Its own one, whatever the scene gives its widgets: sizes and texts go together.
QFont LegendFont()
{
    QFont font;
    font.setPixelSize(legendTextPixels);
    return font;
}

int LegendRow()
{
    return QFontMetrics(LegendFont()).height() + 1;
}
} // namespace

AxColorLegend::AxColorLegend(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("AxColorLegend"));
}

void AxColorLegend::ShowRows(const QString& title, const Rows& rows)
{
    if (title == heading && rows == shown)
        return;
    heading = title;
    shown = rows;
    const QFontMetrics metrics(LegendFont());
    QStringList texts{title};
    int width = metrics.horizontalAdvance(title);
    for (const auto& row : rows) {
        texts += row.second;
        width = qMax(width, swatchWidth + legendMargin + metrics.horizontalAdvance(row.second));
    }
    setAccessibleName(texts.join(QLatin1Char('\n')));
    // A pixel for what rounding takes.
    resize(qMin(widestLegend, width + 1 + 2 * legendMargin),
           2 * legendMargin + (1 + static_cast<int>(rows.size())) * LegendRow());
    update();
}

void AxColorLegend::paintEvent(QPaintEvent*)
{
    const QColor ground(0x2b, 0x37, 0x48);
    const QColor rim(0x54, 0x64, 0x7a);
    const QColor text(0xf3, 0xf6, 0xfa);
    QPainter painter(this);
    painter.fillRect(rect(), ground);
    painter.setPen(rim);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    painter.setPen(text);
    painter.setFont(LegendFont());
    const QFontMetrics metrics(LegendFont());
    QRect row(legendMargin, legendMargin, width() - 2 * legendMargin, LegendRow());
    const auto write = [&](const QRect& in, const QString& words) {
        painter.drawText(in, Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(words, Qt::ElideRight, in.width()));
    };
    write(row, heading);
    for (const auto& [color, words] : qAsConst(shown)) {
        row.translate(0, LegendRow());
        painter.fillRect(QRect(row.left(), row.top() + 1, swatchWidth, row.height() - 2), color);
        write(row.adjusted(swatchWidth + legendMargin, 0, 0, 0), words);
    }
}

void AxColorLegend::mousePressEvent(QMouseEvent* event)
{
    // It would reach the map below.
    event->accept();
}
