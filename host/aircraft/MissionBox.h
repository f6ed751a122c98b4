#pragma once
#include "host/tasks/ShownPlan.h"
#include "host/tasks/TaskFiles.h"

#include <QPointer>
#include <QWidget>

#include <memory>

class AxMavlinkAircraft;
class AxMissionTransfer;
class QLabel;
class QProgressBar;
class QPushButton;

struct AxMissionRead;
struct AircraftEnabled;

/// Brings the mission of the current task to the aircraft in focus, and the mission of the aircraft back. The
/// aircraft and its link may go away at any time: what runs ends with a text. GUI thread.
class MissionBox : public QWidget
{
    Q_OBJECT
public:
    explicit MissionBox(QWidget* parent = nullptr);
    ~MissionBox() override;

    bool IsTransferring() const;
    void SetRoute(const std::shared_ptr<const ShownPlan>& shown) { route = shown; }
    /// The live aircraft in focus, null for none, and what may be pressed. What came of another one's mission
    /// is no longer told.
    void Show(const AxMavlinkAircraft* aircraft, const AircraftEnabled& can);
    /// What has come of a mission is no longer told.
    void Forget();

    /// Nothing without an aircraft or a route, and while something runs. Asks first where the aircraft is in
    /// the air or the route is dangerous.
    void Upload(AxMavlinkAircraft* aircraft);
    void Download(AxMavlinkAircraft* aircraft);
    void Cancel();

signals:
    void UploadWanted();
    void DownloadWanted();
    /// It has begun or ended.
    void Changed();
    /// An aircraft may carry only a part of what was to be uploaded, or what it had before.
    void Failed(const QString& who, const QString& text);
    /// The aircraft has the mission of this task from now on; with empty IDs nobody knows what it has, as
    /// while something is brought to it.
    void Carries(const AxMavlinkAircraft* aircraft, const QString& blockID, const QString& taskID);
    /// The aircraft's mission has come whole.
    void Downloaded(const TaskFiles::Read& read);

private:
    /// Asks where something speaks against it; events run meanwhile.
    bool IsWanted(AxMavlinkAircraft& aircraft, const AxMissionRead& made);
    bool Ask(const QString& text, const QStringList& details, const QString& yes);
    void Begin(AxMavlinkAircraft* aircraft, bool isUpload);
    void Finish(bool isUpload, const QString& fault);
    void Tell(const QString& text, bool isBad);

    std::unique_ptr<AxMissionTransfer> transfer;
    std::shared_ptr<const ShownPlan> route;
    QString aircraftName;
    QPointer<const AxMavlinkAircraft> focus;   // the last one
    QPointer<const AxMavlinkAircraft> carrier; // of what is brought to it, or was
    std::shared_ptr<const ShownPlan> carried;
    QStringList notes;
    QLabel* chosen;
    QPushButton* upload;
    QPushButton* download;
    QPushButton* cancel;
    QProgressBar* progress;
    QLabel* outcome;
};
