#include "viewer/overlay/AxGridWidget.h"

AxGridWidget::AxGridWidget(QWidget* parent) : CAxBaseWidget(parent)
{
    setObjectName(QStringLiteral("AxGridWidget"));
}
