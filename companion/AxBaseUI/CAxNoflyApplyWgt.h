#pragma once

#include <AxBaseUI/AxBaseUIExport.h>
#include <AxBaseUI/CAxBaseDialog.h>

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVector>

class QDateTimeEdit;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

/// The form with which the operator applies to fly in no-fly zones: who flies what, why, when and how high.
/// OK accepts only when everything that is required is there and makes sense; otherwise the form says which
/// entry is missing or wrong and puts the cursor there.
///
/// Whatever was typed is kept when a form closes, accepted or not, and stands in the next one of this
/// process: a failed or cancelled upload loses nothing. A sent application lets the flight go (purpose,
/// times, height, remarks); applicant and aircraft stay until the process ends. Nothing of it is written to
/// disk. GUI thread only.
class AXBASEUI_EXPORT CAxNoflyApplyWgt : public CAxBaseDialog
{
    Q_OBJECT

public:
    /// The ID of the block to be flown and the ids of the zones that it touches.
    CAxNoflyApplyWgt(const QString& blockID, const QStringList& zoneIDs, QWidget* parent = nullptr);

    /// The block's name as the operator knows it; without one the form shows its ID.
    void SetBlockName(const QString& name);
    /// The area to be flown: longitudes and latitudes in degrees, the first place not repeated.
    void SetArea(const QList<QPointF>& ring);
    /// A picture of the block on the map, to go with the application. A null one: none.
    void SetScreenShotsImage(const QImage& image);

    /// The application as one upload body, multipart/form-data in UTF-8 whose boundary is its first line
    /// without the two leading hyphens; empty unless the form was accepted. Its entries, in this order:
    /// "block_id", "block_name", one "zone_id" for each zone, "applicant_name", "organisation", "phone",
    /// "email", "aircraft_model", "aircraft_registration", "purpose", "begin" and "end" (ISO 8601 in UTC, as
    /// 2026-03-01T08:00:00Z), "max_height_m" (whole metres above ground), "remarks", and, where they were
    /// set, two files: "area" ("area.geojson", a GeoJSON feature of the area with the block's ID and name and
    /// the zones' ids) and the picture "screenshot" ("screenshot.png"). What was left out is empty.
    QByteArray ComboUploadData() const;

    /// Lets go what is kept for the next form about the flight, or all of it.
    static void ForgetFlight();
    static void ForgetInput();

public slots:
    void done(int result) override;

protected slots:
    void slotBtnAcceptClicked() override;

private:
    struct Line
    {
        QString key; ///< its name in the upload
        QString label;
        QLineEdit* edit;
        bool required;
    };
    struct Mistake
    {
        QWidget* where;
        QString what;
    };

    void addHeading(QGridLayout* grid, const QString& text);
    void addRow(QGridLayout* grid, const QString& label, QWidget* field, const char* objectName,
                bool required);
    void addLine(QGridLayout* grid, const char* key, const char* objectName, const QString& label,
                 bool required);
    QDateTimeEdit* addTime(QGridLayout* grid, const QString& label, const char* objectName);
    QWidget* createSide();
    QWidget* createFoot();
    void keepInput() const;
    void restoreInput();
    void showLocalTimes();
    /// The first entry that cannot stand; `where` is null when all can.
    Mistake firstMistake() const;
    Mistake mistakeIn(const Line& line) const;
    void pointOut(const Mistake& mistake);
    QByteArray createBody() const;

    QString m_blockID;
    QString m_blockName;
    QStringList m_zoneIDs;
    QList<QPointF> m_area;
    QImage m_screenShot;
    QByteArray m_body; ///< as it was accepted

    QVector<Line> m_lines;
    QDateTimeEdit* m_pBegin = nullptr;
    QDateTimeEdit* m_pEnd = nullptr;
    QLabel* m_pLabLocal = nullptr;
    QPlainTextEdit* m_pRemarks = nullptr;
    QLabel* m_pPicture = nullptr;
    QLabel* m_pLabBlock = nullptr;
    QLabel* m_pLabHint = nullptr;
    QLabel* m_pLabError = nullptr;
};
