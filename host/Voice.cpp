#include "host/Voice.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"
#include "viewer/CAxTextToSpeech.h"

namespace {
constexpr int levelOfWarning = 0;
// What the operator has just done comes before what the program did.
constexpr int levelOfPick = 1;
constexpr int levelOfNews = 2;
} // namespace

Voice::Voice(CAxEarthViewer* viewer, QObject* parent) : QObject(parent)
{
    auto* speech = new CAxTextToSpeech(this);
    connect(this, SIGNAL(Said(QString, int)), speech, SLOT(slotSayCurText(QString, int)));
    connect(viewer, SIGNAL(signalTextSpeechEnabled(bool)), speech, SLOT(slotSpeechEnabled(bool)));

    connect(viewer, &CAxEarthViewer::signalLoadEarth, this, [this, speech] {
        speech->slotStartSpeech();
        emit Said(tr("The map has been loaded."), levelOfNews);
    });
    const auto picked = [this] { emit Said(tr("Position picked."), levelOfPick); };
    connect(viewer, &CAxEarthViewer::LandingPosPicked, this, picked);
    connect(viewer, &CAxEarthViewer::InterestPointPicked, this, picked);
    connect(viewer->getManipulator(), &CAxEarthManipulator::signalRightBtnPicked, this,
            [picked](const osg::Vec3d& lngLatPos) {
                // Over space a pick is zeros.
                if (lngLatPos != osg::Vec3d())
                    picked();
            });
}

void Voice::Warn(const QString& text)
{
    emit Said(text, levelOfWarning);
}
