#pragma once
#include <QString>

class QWidget;

// The modal boxes of the map. They return when the operator has answered, and let
// events run meanwhile. `details` stand below the message in smaller print.

/// A message with its confirming button alone. Escape closes it as well.
void AxShowNotice(QWidget* parent, const QString& title, const QString& text, const QString& details = {});

/// The same for what has gone well: without the warning sign.
void AxShowSuccess(QWidget* parent, const QString& title, const QString& text, const QString& details = {});

/// A message with its confirming button and the one that closes the box.
void AxShowClosableNotice(QWidget* parent, const QString& title, const QString& text);

/// A message that stops something, with the button that closes the box.
void AxShowProblem(QWidget* parent, const QString& title, const QString& text, const QString& details = {});

/// A question; true when it was confirmed, false also when the parent goes meanwhile. With a text for the
/// button that confirms, what it does takes long or cannot be taken back: Enter cancels then.
bool AxAskQuestion(QWidget* parent, const QString& title, const QString& text, const QString& confirm = {});
