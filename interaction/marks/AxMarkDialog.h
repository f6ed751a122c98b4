#pragma once
#include <QString>

class CAxOsgDrawPointSet;
class QWidget;

/// Shows a mark point's coordinates, height, name and note, and waits. What is changed is taken over with OK,
/// after a word where it cannot be; the mark can be deleted there. Set and parent may go away meanwhile.
void AxShowMarkDialog(CAxOsgDrawPointSet& marks, const QString& id, QWidget* parent);
