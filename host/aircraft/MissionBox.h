#pragma once
#include "host/tasks/ShownPlan.h"
#include "host/tasks/TaskFiles.h"

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
    void SetEnabledBy(const AircraftEnabled& can);

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
    /// The aircraft's mission has come whole.
    void Downloaded(const TaskFiles::Read& read);

private:
    /// Asks where something speaks against it; events run meanwhile.
    bool IsWanted(const AxMavlinkAircraft& aircraft, const AxMissionRead& made);
    void Begin(AxMavlinkAircraft* aircraft, bool isUpload);
    void Finish(bool isUpload, const QString& fault);

    std::unique_ptr<AxMissionTransfer> transfer;
    std::shared_ptr<const ShownPlan> route;
    QString aircraftName;
    QStringList notes;
    QPushButton* upload;
    QPushButton* download;
    QPushButton* cancel;
    QProgressBar* progress;
    QLabel* outcome;
};
