#include "host/aircraft/MessageList.h"
#include "host/aircraft/AircraftText.h"

#include <QScrollBar>
#include <QTime>

namespace {
constexpr int keptMessages = 1000;
constexpr int errorLevel = 3;
constexpr int warningLevel = 4;

bool IsAtEnd(const QAbstractScrollArea& area)
{
    return area.verticalScrollBar()->value() == area.verticalScrollBar()->maximum();
}
} // namespace

MessageList::MessageList(QWidget* parent) : QListWidget(parent)
{
    setObjectName(QStringLiteral("MessageList"));
    setAccessibleName(tr("Messages"));
    setWordWrap(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        if (IsNewestSeen())
            emit NewestSeen();
    });
}

void MessageList::Add(const QString& who, int severity, const QString& text)
{
    const QString said = QStringLiteral("%1%2: %3")
                             .arg(who.isEmpty() ? QString() : who + QStringLiteral(", "),
                                  AircraftText::Severity(severity), text);
    const bool isAtEnd = IsAtEnd(*this);
    times = said == last && count() > 0 ? times + 1 : 1;
    last = said;
    QListWidgetItem* line = times > 1 ? item(count() - 1) : new QListWidgetItem(this);
    const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss  "));
    line->setText(time + said + (times > 1 ? QStringLiteral("  \u00d7%1").arg(times) : QString()));
    if (severity <= errorLevel)
        line->setForeground(QColor(0xd0, 0x20, 0x20));
    else if (severity == warningLevel)
        line->setForeground(QColor(0xb0, 0x60, 0x00));
    while (count() > keptMessages)
        delete takeItem(0);
    if (isAtEnd)
        scrollToBottom();
}

bool MessageList::IsNewestSeen() const
{
    return isVisible() && IsAtEnd(*this);
}

void MessageList::showEvent(QShowEvent* event)
{
    QListWidget::showEvent(event);
    scrollToBottom();
    if (IsNewestSeen())
        emit NewestSeen();
}
