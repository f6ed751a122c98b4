// Pictures of the window, and what the display can draw.
#include "host/MainWindow.h"
#include "viewer/CAxEarthViewer.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QGLWidget>
#include <QMessageBox>
#include <QPainter>

bool MainWindow::HasOpenGl() const
{
    const auto* surface = qobject_cast<QGLWidget*>(viewer->viewport());
    return surface && surface->isValid();
}

QSize MainWindow::LargestPicture() const
{
    static_cast<QGLWidget*>(viewer->viewport())->makeCurrent();
    GLint largest[2] = {0, 0};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, largest);
    return {largest[0], largest[1]};
}

bool MainWindow::SavePicture(const QString& file)
{
    // Widgets are painted anew, the globe is taken from what it last showed.
    const QImage globe = viewer->GetCurrViewerImg();
    if (globe.isNull())
        return false;
    QPixmap picture(size());
    picture.fill(palette().color(QPalette::Window));
    QPainter painter(&picture);
    for (QWidget* child : findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (child != viewer && child->isVisible() && !child->isWindow())
            painter.drawPixmap(child->pos(), child->grab());
    painter.drawImage(viewer->mapTo(this, QPoint()), globe);
    painter.end();
    return picture.save(file, QFileInfo(file).suffix().isEmpty() ? "PNG" : nullptr);
}

void MainWindow::OnSavePicture()
{
    const QString png = tr("PNG picture (*.png)");
    const QString jpg = tr("JPEG picture (*.jpg *.jpeg)");
    QFileDialog dialog(this, tr("Save picture"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters({png, jpg});
    dialog.setDefaultSuffix(QStringLiteral("png"));
    connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog, jpg](const QString& filter) {
        dialog.setDefaultSuffix(filter == jpg ? QStringLiteral("jpg") : QStringLiteral("png"));
    });
    dialog.selectFile(QStringLiteral("globe.png"));
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString file = dialog.selectedFiles().constFirst();
    if (SavePicture(file))
        Tell(tr("Saved %1").arg(file));
    else
        QMessageBox::warning(this, tr("Save picture"), tr("%1: the picture cannot be written").arg(file));
}
