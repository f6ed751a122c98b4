#include "host/KeptState.h"
#include "host/HostOptions.h"

#include <QAbstractButton>
#include <QAction>
#include <QLocale>

namespace {
constexpr char viewKey[] = "view";
} // namespace

KeptState* KeptState::Open(const HostOptions& options, QObject* parent)
{
    if (!options.KeepsState())
        return nullptr;
    return new KeptState(
        options.settingsFile.isEmpty()
            ? new QSettings(QStringLiteral("AxEarthViewer"), QStringLiteral("AxGroundControl"))
            : new QSettings(options.settingsFile, QSettings::IniFormat),
        parent);
}

KeptState::KeptState(QSettings* settings, QObject* parent) : QObject(parent), store(settings)
{
    store->setParent(this);
}

QByteArray KeptState::Bytes(const QString& key) const
{
    return store->value(key).toByteArray();
}

void KeptState::SetBytes(const QString& key, const QByteArray& value)
{
    store->setValue(key, value);
}

bool KeptState::Switch(const QString& key, bool otherwise) const
{
    return store->value(QStringLiteral("switches/") + key, otherwise).toBool();
}

void KeptState::SetSwitch(const QString& key, bool on)
{
    store->setValue(QStringLiteral("switches/") + key, on);
}

template <typename Widget> void KeptState::follow(const QString& key, Widget* widget)
{
    widget->setChecked(Switch(key, widget->isChecked()));
    connect(widget, &Widget::toggled, this, [this, key](bool on) { SetSwitch(key, on); });
}

void KeptState::Follow(const QString& key, QAction* action)
{
    follow(key, action);
}

void KeptState::Follow(const QString& key, QAbstractButton* button)
{
    follow(key, button);
}

std::optional<TourStop> KeptState::View() const
{
    return ParseView(store->value(QLatin1String(viewKey)).toString());
}

void KeptState::SetView(const osgEarth::Viewpoint& view)
{
    const osg::Vec3d focus = view.focalPoint()->vec3d();
    QStringList numbers;
    for (const double number :
         {focus.x(), focus.y(), focus.z(), view.getHeading(), view.getPitch(), view.getRange()})
        numbers += QString::number(number, 'g', QLocale::FloatingPointShortest);
    store->setValue(QLatin1String(viewKey), numbers.join(QLatin1Char(',')));
}
