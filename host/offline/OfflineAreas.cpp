#include "host/offline/OfflineAreas.h"
#include "host/offline/OfflineBox.h"
#include "viewer/AxMapLayers.h"
#include "viewer/CAxEarthViewer.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QScopedValueRollback>

#include <algorithm>

namespace {
const QString filesKey = QStringLiteral("files");
const QString typedKey = QStringLiteral("typed");
} // namespace

OfflineAreas::OfflineAreas(CAxEarthViewer* earthViewer, QWidget* parent)
    : QObject(parent), viewer(earthViewer), window(parent)
{
    connect(viewer->GetMapLayers(), &AxMapLayers::changed, this, &OfflineAreas::OnLayers);
    connect(viewer, &CAxEarthViewer::signalLoadEarth, this, &OfflineAreas::ShowKept);
}

OfflineAreas::~OfflineAreas()
{
    delete box;
}

void OfflineAreas::FillMenu(QMenu* menu)
{
    menu->addAction(tr("Save area for use without &network..."), this, &OfflineAreas::Open);
    missing = menu->addMenu(tr("Saved areas that are not &there"));
    connect(menu, &QMenu::aboutToShow, this, &OfflineAreas::FillMissing);
    FillMissing();
}

void OfflineAreas::FillMissing()
{
    if (!missing)
        return;
    const QStringList files = Missing();
    qDeleteAll(missing->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly));
    missing->menuAction()->setVisible(!files.isEmpty());
    for (const QString& file : files) {
        const QString title = QDir::toNativeSeparators(file).replace(QLatin1Char('&'), QStringLiteral("&&"));
        QMenu* one = missing->addMenu(title);
        one->addAction(tr("&Find file…"), this, [this, file] {
            const QString there =
                QFileDialog::getOpenFileName(window, tr("Where is %1 now?").arg(QFileInfo(file).fileName()),
                                             QFileInfo(file).path(), tr("Tiles (*.mbtiles)"));
            if (!there.isEmpty())
                FindAgain(file, there);
        });
        one->addAction(tr("F&orget"), this, [this, file] { Forget(file); });
    }
}

QStringList OfflineAreas::Missing() const
{
    QStringList files;
    for (auto file = shown.begin(); file != shown.end(); ++file)
        if (file.value() == 0 && !QFileInfo(file.key()).isFile())
            files += file.key();
    return files;
}

void OfflineAreas::Forget(const QString& file)
{
    if (shown.value(file, -1) != 0)
        return;
    shown.remove(file);
    emit KeptChanged();
}

bool OfflineAreas::FindAgain(const QString& file, const QString& there)
{
    if (!Show(there))
        return false;
    Forget(file);
    return true;
}

QByteArray OfflineAreas::Kept() const
{
    QJsonObject all = QJsonDocument::fromJson(typed).object();
    return QJsonDocument(QJsonObject{{filesKey, QJsonArray::fromStringList(shown.keys())}, {typedKey, all}})
        .toJson(QJsonDocument::Compact);
}

void OfflineAreas::SetKept(const QByteArray& text)
{
    const QJsonObject all = QJsonDocument::fromJson(text).object();
    const QJsonArray files = all[filesKey].toArray();
    for (const QJsonValue& file : files)
        if (!file.toString().isEmpty())
            shown.insert(file.toString(), 0);
    typed = QJsonDocument(all[typedKey].toObject()).toJson(QJsonDocument::Compact);
}

void OfflineAreas::ShowKept()
{
    for (const QString& file : shown.keys())
        if (shown.value(file) == 0 && QFileInfo(file).isFile())
            Show(file);
    // On a drive that is not there today, say: they are looked for again the next time.
    const QStringList away = Missing();
    if (!away.isEmpty())
        emit Told(tr("Areas saved for use without network are not there: %1. The menu View finds or forgets "
                     "them.")
                      .arg(QDir::toNativeSeparators(away.join(QStringLiteral(", ")))));
}

bool OfflineAreas::Show(const QString& file)
{
    AxMapLayers* layers = viewer->GetMapLayers();
    const QString path = QFileInfo(file).absoluteFilePath();
    QString why;
    const QList<AxMapLayer> before = layers->All();
    int id = layers->AddImage(path, &why);
    const auto former =
        std::find_if(before.begin(), before.end(), [id](const AxMapLayer& layer) { return layer.id == id; });
    if (id != 0 && former != before.end()) {
        const QScopedValueRollback<QMap<QString, int>> keep(shown);
        layers->SetVisible(id, former->isVisible);
        id = layers->OpenImageAgain(id, &why);
    }
    if (id == 0)
        emit Told(why);
    if (id != 0 || shown.contains(path))
        shown[path] = id;
    emit KeptChanged();
    return id != 0;
}

bool OfflineAreas::IsSeen(const QString& file) const
{
    const int id = shown.value(QFileInfo(file).absoluteFilePath());
    const QList<AxMapLayer> all = viewer->GetMapLayers()->All();
    return std::any_of(all.begin(), all.end(),
                       [id](const AxMapLayer& layer) { return layer.id == id && layer.isVisible; });
}

void OfflineAreas::OnLayers()
{
    const QList<AxMapLayer> all = viewer->GetMapLayers()->All();
    // The map is going, or not there yet.
    if (all.isEmpty())
        return;
    bool isChanged = false;
    for (auto file = shown.begin(); file != shown.end();) {
        const bool isGone = file.value() != 0 &&
                            std::none_of(all.begin(), all.end(),
                                         [&](const AxMapLayer& layer) { return layer.id == file.value(); });
        file = isGone ? shown.erase(file) : file + 1;
        isChanged = isChanged || isGone;
    }
    if (isChanged)
        emit KeptChanged();
}

void OfflineAreas::Open()
{
    if (!box) {
        box = new OfflineBox(viewer, window);
        box->SetTyped(typed);
        connect(box, &OfflineBox::Told, this, &OfflineAreas::Told);
        connect(box, &OfflineBox::TypedChanged, this, [this] {
            typed = box->Typed();
            emit KeptChanged();
        });
        connect(box, &OfflineBox::Saved, this, [this](const QString& file) {
            // One that was hidden stays so.
            if (Show(file) && IsSeen(file))
                emit Told(
                    tr("%1 is shown on the map, with or without a network.").arg(QFileInfo(file).fileName()));
        });
    }
    box->Open();
}
