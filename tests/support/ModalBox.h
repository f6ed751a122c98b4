#pragma once
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <QTimer>

/**
 * Answers modal boxes while it lives: waits for one, records its title, its
 * texts and its visible buttons, and presses the first visible button.
 */
class ModalBox : public QObject
{
public:
    ModalBox()
    {
        connect(&timer, &QTimer::timeout, this, &ModalBox::Look);
        timer.start(10);
    }

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
        press ? press->click() : box->reject();
    }

    QTimer timer;
};
