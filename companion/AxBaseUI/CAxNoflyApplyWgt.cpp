#include <AxBaseUI/CAxNoflyApplyWgt.h>

#include "support/AreaJson.h"
#include "support/FormData.h"

#include <QBuffer>
#include <QDateTimeEdit>
#include <QGridLayout>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>

namespace {
constexpr int MaxLineLength = 200;
constexpr int MaxRemarksLength = 2000;
constexpr int MinPhoneDigits = 5;
constexpr int MaxHeightMetres = 10000;
constexpr int UsualFlightSeconds = 2 * 3600;
constexpr int FieldWidth = 260;
constexpr int RemarksHeight = 56;
constexpr QSize PictureSize(320, 200);

const QString HeightKey = QStringLiteral("max_height_m");
const QString PurposeKey = QStringLiteral("purpose");
const QString PhoneKey = QStringLiteral("phone");
const QString EMailKey = QStringLiteral("email");
const QString RemarksKey = QStringLiteral("remarks");

/// What was typed into the last form.
struct Kept
{
    QHash<QString, QString> texts; ///< by upload name
    QDateTime begin;               ///< not valid: the usual time
    QDateTime end;
} theKept;

std::optional<int> heightOf(const QString& text)
{
    bool ok = false;
    int height = text.trimmed().toInt(&ok);
    if (!ok)
        height = QLocale().toInt(text.trimmed(), &ok);
    return ok && height >= 1 && height <= MaxHeightMetres ? std::optional<int>(height) : std::nullopt;
}

bool isPhone(const QString& text)
{
    static const QRegularExpression allowed(QStringLiteral("^[-+0-9 ()/.]+$"));
    const auto isDigit = [](QChar c) { return c.isDigit(); };
    return allowed.match(text).hasMatch() &&
           std::count_if(text.begin(), text.end(), isDigit) >= MinPhoneDigits;
}

bool isEMail(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("^[^\\s@]+@[^\\s@.]+(\\.[^\\s@.]+)+$"));
    return pattern.match(text).hasMatch();
}

/// A full hour that does not pass while the form is being filled in.
QDateTime usualBegin()
{
    constexpr int fillInSeconds = 30 * 60;
    const QDateTime ready = QDateTime::currentDateTimeUtc().addSecs(fillInSeconds);
    return QDateTime(ready.date(), QTime(ready.time().hour(), 0), Qt::UTC).addSecs(3600);
}

QString isoTime(const QDateTimeEdit* edit)
{
    return edit->dateTime().toUTC().toString(Qt::ISODate);
}

QByteArray pngOf(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, "PNG") ? bytes : QByteArray();
}

QLabel* plainLabel(const QString& text)
{
    auto* const label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    return label;
}

/// Both times where the computer stands; the date of the second one only when it is another.
QString localTimes(const QDateTime& begin, const QDateTime& end)
{
    const QString dateAndTime = QStringLiteral("yyyy-MM-dd HH:mm");
    const QDateTime from = begin.toLocalTime();
    const QDateTime to = end.toLocalTime();
    const bool sameDay = from.date() == to.date();
    return from.toString(dateAndTime) + QStringLiteral(" – ") +
           to.toString(sameDay ? QStringLiteral("HH:mm") : dateAndTime);
}
} // namespace

CAxNoflyApplyWgt::CAxNoflyApplyWgt(const QString& blockID, const QStringList& zoneIDs, QWidget* parent)
    : CAxBaseDialog(parent), m_blockID(blockID), m_zoneIDs(zoneIDs)
{
    SetWindowTitle(tr("Application to fly"));
    SetBtnOKText(tr("Send"));

    auto* const columns = new QHBoxLayout;
    columns->setSpacing(24);
    ContentLayout()->addLayout(columns, 1);
    auto* const grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(4);
    columns->addLayout(grid, 1);

    addHeading(grid, tr("Applicant"));
    addLine(grid, "applicant_name", "m_pName", tr("Name"), true);
    addLine(grid, "organisation", "m_pOrganisation", tr("Organisation"), false);
    addLine(grid, "phone", "m_pPhone", tr("Phone"), true);
    addLine(grid, "email", "m_pEMail", tr("E-mail"), true);
    addHeading(grid, tr("Aircraft"));
    addLine(grid, "aircraft_model", "m_pModel", tr("Model"), true);
    addLine(grid, "aircraft_registration", "m_pRegistration", tr("Registration"), true);
    addHeading(grid, tr("Flight"));
    addLine(grid, "purpose", "m_pPurpose", tr("Purpose"), true);
    m_pBegin = addTime(grid, tr("Begin (UTC)"), "m_pBegin");
    m_pEnd = addTime(grid, tr("End (UTC)"), "m_pEnd");
    m_pLabLocal = plainLabel(QString());
    m_pLabLocal->setObjectName(QStringLiteral("m_pLabLocal"));
    m_pLabLocal->setWordWrap(true); // two dates are too long for the column
    grid->addWidget(m_pLabLocal, grid->rowCount(), 1);
    addLine(grid, "max_height_m", "m_pMaxHeight", tr("Max. height above ground (m)"), true);
    m_pRemarks = new QPlainTextEdit;
    m_pRemarks->setTabChangesFocus(true);
    m_pRemarks->setFixedHeight(RemarksHeight);
    addRow(grid, tr("Remarks"), m_pRemarks, "m_pRemarks", false);
    grid->setRowStretch(grid->rowCount(), 1);

    columns->addWidget(createSide());
    ContentLayout()->addWidget(createFoot());

    connect(m_pBegin, &QDateTimeEdit::dateTimeChanged, this, &CAxNoflyApplyWgt::showLocalTimes);
    connect(m_pEnd, &QDateTimeEdit::dateTimeChanged, this, &CAxNoflyApplyWgt::showLocalTimes);
    SetBlockName(QString());
    SetScreenShotsImage(QImage());
    restoreInput();
}

void CAxNoflyApplyWgt::addHeading(QGridLayout* grid, const QString& text)
{
    QLabel* const heading = plainLabel(text);
    heading->setProperty("heading", true);
    const int row = grid->rowCount();
    grid->addWidget(heading, row, 0, 1, 2);
}

void CAxNoflyApplyWgt::addRow(QGridLayout* grid, const QString& label, QWidget* field, const char* objectName,
                              bool required)
{
    QLabel* const name = plainLabel(required ? tr("%1 *").arg(label) : label);
    name->setBuddy(field);
    field->setObjectName(QString::fromLatin1(objectName));
    field->setAccessibleName(label);
    field->setMinimumWidth(FieldWidth);
    const int row = grid->rowCount();
    grid->addWidget(name, row, 0, field == m_pRemarks ? Qt::AlignTop : Qt::AlignVCenter);
    grid->addWidget(field, row, 1);
}

void CAxNoflyApplyWgt::addLine(QGridLayout* grid, const char* key, const char* objectName,
                               const QString& label, bool required)
{
    auto* const edit = new QLineEdit;
    edit->setMaxLength(MaxLineLength);
    addRow(grid, label, edit, objectName, required);
    m_lines.append({QString::fromLatin1(key), label, edit, required});
}

QDateTimeEdit* CAxNoflyApplyWgt::addTime(QGridLayout* grid, const QString& label, const char* objectName)
{
    auto* const edit = new QDateTimeEdit;
    edit->setTimeSpec(Qt::UTC);
    edit->setDisplayFormat(QStringLiteral("yyyy-MM-dd HH:mm"));
    edit->setCalendarPopup(true);
    addRow(grid, label, edit, objectName, true);
    return edit;
}

QWidget* CAxNoflyApplyWgt::createSide()
{
    auto* const side = new QWidget;
    auto* const column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    m_pPicture = new QLabel;
    m_pPicture->setObjectName(QStringLiteral("m_pPicture"));
    m_pPicture->setFixedSize(PictureSize);
    m_pPicture->setAlignment(Qt::AlignCenter);
    column->addWidget(m_pPicture);

    column->addWidget(plainLabel(tr("No-fly zones of the area: %1").arg(m_zoneIDs.size())));
    auto* const zones = new QListWidget;
    zones->setObjectName(QStringLiteral("m_pZones"));
    zones->setUniformItemSizes(true);
    zones->addItems(m_zoneIDs);
    column->addWidget(zones, 1);

    m_pLabBlock = plainLabel(QString());
    m_pLabBlock->setObjectName(QStringLiteral("m_pLabBlock"));
    m_pLabBlock->setToolTip(m_blockID);
    column->addWidget(m_pLabBlock);
    return side;
}

/// The hint and the mistake in one place, which is as high as a long mistake from the start: the form does
/// not grow when there is one.
QWidget* CAxNoflyApplyWgt::createFoot()
{
    constexpr int mistakeLines = 2;
    auto* const foot = new QWidget;
    auto* const place = new QGridLayout(foot);
    place->setContentsMargins(0, 0, 0, 0);
    m_pLabHint = plainLabel(tr("Entries marked with * are required."));
    m_pLabError = plainLabel(QString());
    m_pLabError->hide();
    m_pLabError->setObjectName(QStringLiteral("m_pLabError"));
    m_pLabError->setWordWrap(true);
    for (QLabel* const label : {m_pLabHint, m_pLabError})
        place->addWidget(label, 0, 0, Qt::AlignTop);
    foot->setFixedHeight(mistakeLines * m_pLabError->fontMetrics().lineSpacing());
    return foot;
}

void CAxNoflyApplyWgt::SetBlockName(const QString& name)
{
    m_blockName = name;
    const QString shown = tr("Block: %1").arg(name.isEmpty() ? m_blockID : name);
    m_pLabBlock->ensurePolished();
    m_pLabBlock->setText(m_pLabBlock->fontMetrics().elidedText(shown, Qt::ElideMiddle, PictureSize.width()));
}

void CAxNoflyApplyWgt::SetArea(const QList<QPointF>& ring)
{
    m_area = ring;
}

void CAxNoflyApplyWgt::SetScreenShotsImage(const QImage& image)
{
    m_screenShot = image;
    if (image.isNull()) {
        m_pPicture->setText(tr("No picture"));
        return;
    }
    m_pPicture->setPixmap(
        QPixmap::fromImage(image.scaled(PictureSize, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

void CAxNoflyApplyWgt::showLocalTimes()
{
    m_pLabLocal->setText(tr("Local time: %1").arg(localTimes(m_pBegin->dateTime(), m_pEnd->dateTime())));
}

CAxNoflyApplyWgt::Mistake CAxNoflyApplyWgt::mistakeIn(const Line& line) const
{
    const QString text = line.edit->text().trimmed();
    if (line.required && text.isEmpty())
        return {line.edit, tr("\"%1\" must be filled in.").arg(line.label)};
    if (line.key == PhoneKey && !isPhone(text))
        return {line.edit, tr("\"%1\" is no telephone number: digits and + - ( ) / . are expected, as in "
                              "+86 10 1234 5678.")
                               .arg(line.label)};
    if (line.key == EMailKey && !isEMail(text))
        return {line.edit, tr("\"%1\" is no address: name@example.org is expected.").arg(line.label)};
    if (line.key == HeightKey && !heightOf(text))
        return {line.edit, tr("\"%1\" must be a whole number from 1 to %2.")
                               .arg(line.label, QString::number(MaxHeightMetres))};
    return {};
}

CAxNoflyApplyWgt::Mistake CAxNoflyApplyWgt::firstMistake() const
{
    for (const Line& line : m_lines) {
        // The times stand between the lines before the height and the height.
        if (line.key == HeightKey) {
            if (m_pBegin->dateTime() < QDateTime::currentDateTimeUtc())
                return {m_pBegin, tr("\"%1\" lies in the past.").arg(m_pBegin->accessibleName())};
            if (m_pEnd->dateTime() <= m_pBegin->dateTime())
                return {m_pEnd, tr("\"%1\" must be later than \"%2\".")
                                    .arg(m_pEnd->accessibleName(), m_pBegin->accessibleName())};
        }
        const Mistake mistake = mistakeIn(line);
        if (mistake.where)
            return mistake;
    }
    if (m_pRemarks->toPlainText().size() > MaxRemarksLength)
        return {m_pRemarks, tr("\"%1\" may have %2 characters at most.")
                                .arg(m_pRemarks->accessibleName(), QString::number(MaxRemarksLength))};
    return {};
}

void CAxNoflyApplyWgt::pointOut(const Mistake& mistake)
{
    for (QWidget* const field : findChildren<QWidget*>()) {
        const bool wrong = field == mistake.where;
        if (field->property("wrong").toBool() == wrong)
            continue;
        field->setProperty("wrong", wrong);
        field->style()->unpolish(field);
        field->style()->polish(field);
    }
    m_pLabError->setText(mistake.what);
    m_pLabError->setVisible(mistake.where);
    m_pLabHint->setVisible(!mistake.where);
    if (mistake.where)
        mistake.where->setFocus(Qt::OtherFocusReason);
}

void CAxNoflyApplyWgt::slotBtnAcceptClicked()
{
    const Mistake mistake = firstMistake();
    pointOut(mistake);
    if (mistake.where)
        return;
    m_body = createBody();
    accept();
}

void CAxNoflyApplyWgt::done(int result)
{
    keepInput();
    if (result != Accepted)
        m_body.clear();
    CAxBaseDialog::done(result);
}

void CAxNoflyApplyWgt::keepInput() const
{
    for (const Line& line : m_lines)
        theKept.texts[line.key] = line.edit->text();
    theKept.texts[RemarksKey] = m_pRemarks->toPlainText();
    theKept.begin = m_pBegin->dateTime();
    theKept.end = m_pEnd->dateTime();
}

void CAxNoflyApplyWgt::restoreInput()
{
    for (const Line& line : m_lines)
        line.edit->setText(theKept.texts.value(line.key));
    m_pRemarks->setPlainText(theKept.texts.value(RemarksKey));
    const QDateTime usual = usualBegin();
    m_pBegin->setDateTime(theKept.begin.isValid() ? theKept.begin : usual);
    m_pEnd->setDateTime(theKept.end.isValid() ? theKept.end : usual.addSecs(UsualFlightSeconds));
    showLocalTimes();
}

void CAxNoflyApplyWgt::ForgetFlight()
{
    for (const QString& key : {PurposeKey, HeightKey, RemarksKey})
        theKept.texts.remove(key);
    theKept.begin = theKept.end = QDateTime();
}

void CAxNoflyApplyWgt::ForgetInput()
{
    theKept = Kept();
}

QByteArray CAxNoflyApplyWgt::ComboUploadData() const
{
    return result() == Accepted ? m_body : QByteArray();
}

QByteArray CAxNoflyApplyWgt::createBody() const
{
    FormData form;
    form.addText(QStringLiteral("block_id"), m_blockID);
    form.addText(QStringLiteral("block_name"), m_blockName);
    for (const QString& zone : m_zoneIDs)
        form.addText(QStringLiteral("zone_id"), zone);
    for (const Line& line : m_lines) {
        if (line.key == HeightKey) {
            form.addText(QStringLiteral("begin"), isoTime(m_pBegin));
            form.addText(QStringLiteral("end"), isoTime(m_pEnd));
        }
        const QString text = line.edit->text().trimmed();
        form.addText(line.key, line.key == HeightKey ? QString::number(*heightOf(text)) : text);
    }
    form.addText(RemarksKey, m_pRemarks->toPlainText());
    const QByteArray area = AreaJson(m_area, {{"block_id", m_blockID},
                                              {"block_name", m_blockName},
                                              {"zone_ids", QJsonArray::fromStringList(m_zoneIDs)}});
    if (!area.isEmpty())
        form.addFile(QStringLiteral("area"), QStringLiteral("area.geojson"),
                     QByteArrayLiteral("application/geo+json"), area);
    const QByteArray picture = pngOf(m_screenShot);
    if (!picture.isEmpty())
        form.addFile(QStringLiteral("screenshot"), QStringLiteral("screenshot.png"),
                     QByteArrayLiteral("image/png"), picture);
    return form.body();
}
