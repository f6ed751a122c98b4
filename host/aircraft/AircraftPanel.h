#pragma once
#include "host/aircraft/LinkSettings.h"
#include "host/aircraft/PanelRules.h"
#include "host/tasks/ShownPlan.h"
#include "host/tasks/TaskFiles.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>

class AircraftSession;
class CAxEarthViewer;
class CommandBar;
class ConnectForm;
class MessageList;
class MissionBox;
class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;
class QTabWidget;
class QToolButton;
class QTreeWidget;
class ReplayBar;

/**
 * The aircraft on a link or in a recorded flight: connects and disconnects, shows what is known of the one in
 * focus and what it says, exchanges missions, steers replays and views. GUI thread.
 */
class AircraftPanel : public QWidget
{
    Q_OBJECT
public:
    /// The viewer may go away first.
    explicit AircraftPanel(CAxEarthViewer* viewer, QWidget* parent = nullptr);
    /// Disconnects; records end whole.
    ~AircraftPanel() override;

    QSize sizeHint() const override;

    /// The route that the simulator flies and that is brought to aircraft; null for none.
    void ShowPlan(const std::shared_ptr<const ShownPlan>& plan);

    /// What is kept from one run to the next. No key is among it.
    QByteArray Settings() const;
    void SetSettings(const QByteArray& kept);

    AircraftSession& Session() const { return *session; }
    /// What would be left alone if the program ended now; empty: nothing.
    QString ReasonToStay() const;

signals:
    /// Something that the status bar shows.
    void Told(const QString& text);
    /// Something that is to be said aloud.
    void Spoken(const QString& text);

private:
    QWidget* BuildLink();
    QWidget* BuildFlight();
    QWidget* BuildViews();
    QWidget* BuildRecording();
    AircraftFacts Facts() const;
    void Connect();
    void Disconnect();
    void OnSaid(const QString& who, int severity, const QString& text, bool isLive);
    void OnDownloaded(const TaskFiles::Read& read);
    void ChooseRecordFolder();
    void OpenRecordFolder();
    void ExportPhotos();
    void LookFromHome();
    void ShowAll();
    void ShowAircraft();
    void ShowValues();
    void ShowViews();
    void ShowUnread();

    QPointer<CAxEarthViewer> viewer;
    AircraftSession* session;
    std::shared_ptr<const ShownPlan> route;
    QTimer clock;
    QString recordFolder;
    bool isListing = false;
    bool isAwaited = false; ///< nothing has been heard since Connect
    int unread = 0;         ///< warnings that came while the messages were not in sight

    QLabel* state;
    ReplayBar* replay;
    QTabWidget* tabs;
    ConnectForm* form;
    QPushButton* connectButton;
    QPushButton* disconnectButton;
    QPushButton* removeButton;
    QLabel* recorded;
    QListWidget* list;
    QTreeWidget* values;
    CommandBar* commands;
    QToolButton* follow;
    QToolButton* chase;
    QToolButton* home;
    QCheckBox* trail;
    QCheckBox* photos;
    QToolButton* clearTrail;
    QToolButton* exportPhotos;
    MissionBox* mission;
    MessageList* messages;
};
