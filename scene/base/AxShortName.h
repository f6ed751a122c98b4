#pragma once
#include <QString>

/// A name on one line, of at most so many letters: what is cut off is an ellipsis. Letters that are made of
/// several characters stay whole.
QString AxShortName(const QString& name, int mostLetters);
