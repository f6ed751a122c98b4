#pragma once
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStringList>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

/**
 * Answers modal boxes while it lives: waits for one, records its title, its
 * texts and its visible buttons, and presses the first visible button, or does
 * what the next of `answers` says.
 */
class ModalBox : public QObject
{
public:
    ModalBox()
    {
        connect(&timer, &QTimer::timeout, this, &ModalBox::Look);
        timer.start(10);
    }

    using Answer = std::function<void(QDialog&)>;
    /// Presses the visible button of that text.
    static Answer Press(const QString& text)
    {
        return [text](QDialog& box) {
            for (QPushButton* button : box.findChildren<QPushButton*>())
                if (button->isVisible() && button->text() == text)
                    return button->click();
            ADD_FAILURE() << "no button " << text.toStdString();
            box.reject();
        };
    }
    /// Writes into the editable lines, in their order, and presses OK.
    static Answer Fill(const QStringList& values)
    {
        return [values](QDialog& box) {
            int i = 0;
            for (QLineEdit* line : box.findChildren<QLineEdit*>())
                if (line->isVisible() && !line->isReadOnly() && i < values.size())
                    line->setText(values[i++]);
            Press(QStringLiteral("OK"))(box);
        };
    }

    QList<Answer> answers;
    QStringList titles; ///< of all boxes so far
    int count = 0;
    QString title;
    QStringList texts;
    QStringList buttons;

private:
    void Look()
    {
        auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!box || !box->isVisible())
            return;
        ++count;
        title = box->windowTitle();
        titles += title;
        texts.clear();
        buttons.clear();
        for (const QLabel* label : box->findChildren<QLabel*>())
            texts += label->text();
        QPushButton* press = nullptr;
        for (QPushButton* button : box->findChildren<QPushButton*>()) {
            if (!button->isVisible())
                continue;
            buttons += button->text();
            if (!press)
                press = button;
        }
        if (!answers.isEmpty())
            answers.takeFirst()(*box);
        else
            press ? press->click() : box->reject();
    }

    QTimer timer;
};
