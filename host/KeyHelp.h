#pragma once

class QWidget;

/// Shows what mouse and keys do, in a window of its own beside `parent`; a second call raises the first
/// one's.
void ShowKeyHelp(QWidget* parent);
