#include "host/TypedBox.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace {
constexpr int widthOfLine = 420;
constexpr int linesOfReading = 4;
} // namespace

TypedBox::TypedBox(const QString& title, const QString& hint, Reader reader, QWidget* parent)
    : CAxBaseDialog(parent), read(std::move(reader)), line(new QLineEdit), understood(new QLabel)
{
    SetWindowTitle(title);
    line->setObjectName(QStringLiteral("TypedLine"));
    line->setMinimumWidth(widthOfLine);
    line->setAccessibleName(title);
    understood->setObjectName(QStringLiteral("Understood"));
    auto* hintLabel = new QLabel(hint);
    for (QLabel* label : {understood, hintLabel}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    }
    // The box keeps its size while it is typed in.
    understood->setMinimumHeight(linesOfReading * understood->fontMetrics().lineSpacing());
    ContentLayout()->addWidget(line);
    ContentLayout()->addWidget(understood);
    ContentLayout()->addWidget(hintLabel);
    connect(line, &QLineEdit::textChanged, this, &TypedBox::Read);
    Read();
    line->setFocus();
}

QString TypedBox::Text() const
{
    return line->text();
}

void TypedBox::SetText(const QString& text)
{
    line->setText(text);
    line->selectAll();
}

void TypedBox::AddExtraButton(const QString& text)
{
    extra = new QPushButton(text);
    extra->setObjectName(QStringLiteral("ExtraButton"));
    extra->setAutoDefault(false);
    extra->setEnabled(isGood);
    ContentLayout()->addWidget(extra, 0, Qt::AlignRight);
    connect(extra, &QPushButton::clicked, this, [this] {
        wasExtra = true;
        slotBtnAcceptClicked();
    });
}

void TypedBox::slotBtnAcceptClicked()
{
    if (isGood)
        CAxBaseDialog::slotBtnAcceptClicked();
}

void TypedBox::Read()
{
    const Reading reading = line->text().trimmed().isEmpty() ? Reading() : read(line->text());
    isGood = reading.isGood;
    understood->setText(reading.text);
    OKButton()->setEnabled(isGood);
    if (extra)
        extra->setEnabled(isGood);
}
