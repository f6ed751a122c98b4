#include "LoopbackFormServer.h"
#include "NamedChild.h"

#include <AxBaseUI/CAxNoflyApplyUpload.h>
#include <AxBaseUI/CAxNoflyApplyWgt.h>

#include <QApplication>
#include <QDateTimeEdit>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace {
using Manner = LoopbackFormServer::Manner;

QString textOf(const QWidget& parent, const char* label)
{
    return child<QLabel>(parent, label)->text();
}

/// Runs a form and does something to it once it is up.
int execAnd(CAxNoflyApplyWgt& form, const std::function<void()>& action)
{
    QTimer::singleShot(0, &form, action);
    return form.exec();
}

void press(const QWidget& dialog, const char* name)
{
    QTest::mouseClick(child<QPushButton>(dialog, name), Qt::LeftButton);
}

void write(const QWidget& form, const char* name, const QString& text)
{
    child<QLineEdit>(form, name)->setText(text);
}

void setTime(const QWidget& form, const char* name, const QDateTime& time)
{
    child<QDateTimeEdit>(form, name)->setDateTime(time);
}

const QDateTime Begin(QDate(2091, 3, 1), QTime(8, 5), Qt::UTC);
const QDateTime End(QDate(2091, 3, 1), QTime(10, 0), Qt::UTC);

void fill(const QWidget& form)
{
    write(form, "m_pName", QString::fromUtf8("  王小明 \"Ming\"; name=\"x\" "));
    write(form, "m_pOrganisation", QString::fromUtf8("Çelik & <b>Söhne</b>"));
    write(form, "m_pPhone", QStringLiteral("+86 (10) 1234-5678"));
    write(form, "m_pEMail", QStringLiteral("ming@survey.example.cn"));
    write(form, "m_pModel", QStringLiteral("VTOL 2"));
    write(form, "m_pRegistration", QStringLiteral("B-7%0A1"));
    write(form, "m_pPurpose", QStringLiteral("Quarry survey"));
    setTime(form, "m_pBegin", Begin);
    setTime(form, "m_pEnd", End);
    write(form, "m_pMaxHeight", QStringLiteral(" 120 "));
    child<QPlainTextEdit>(form, "m_pRemarks")->setPlainText(QString::fromUtf8("第一行\n--second--\n\n"));
}

/// The part of a form's body that carries a text.
QByteArray text(const char* name, const QByteArray& content)
{
    return QByteArray("Content-Disposition: form-data; name=\"") + name +
           "\"\r\nContent-Type: text/plain; charset=utf-8\r\n\r\n" + content;
}

QByteArray someBody(int size = 100)
{
    return "--edge\r\nContent-Disposition: form-data; name=\"a\"\r\n\r\n" + QByteArray(size, 'x') +
           "\r\n--edge--\r\n";
}

/// Forms and uploads of one case start from nothing.
class Apply : public testing::Test
{
protected:
    Apply() { CAxNoflyApplyWgt::ForgetInput(); }
    ~Apply() override
    {
        CAxNoflyApplyWgt::ForgetInput();
        CAxNoflyApplyUpload::SetUploadUrl(QUrl());
        CAxNoflyApplyUpload::SetStallTimeout(30000);
        QLocale::setDefault(QLocale::c());
    }
};

using ApplyForm = Apply;
class ApplyUpload : public Apply
{
protected:
    ApplyUpload() { CAxNoflyApplyUpload::SetUploadUrl(server.url()); }

    /// Waits until the display offers to close or to try again.
    static bool ended(const CAxNoflyApplyUpload& upload)
    {
        return QTest::qWaitFor([&upload] { return !child<QPushButton>(upload, "m_pBtnOK")->isHidden(); },
                               20000);
    }

    LoopbackFormServer server;
};
} // namespace

TEST_F(ApplyForm, BodyHoldsEveryEntryAsTyped)
{
    QLocale::setDefault(QLocale(QLocale::German));
    QImage picture(20, 10, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    picture.setPixel(3, 4, qRgb(1, 2, 3));
    CAxNoflyApplyWgt form(QStringLiteral("{block}"),
                          {QString::fromUtf8("机场,1"), QStringLiteral("a\"b|\r\n--c")});
    form.SetBlockName(QString::fromUtf8("采石场"));
    form.SetScreenShotsImage(picture);
    fill(form);
    EXPECT_TRUE(form.ComboUploadData().isEmpty()) << "not accepted yet";
    ASSERT_EQ(execAnd(form, [&form] { press(form, "m_pBtnOK"); }), QDialog::Accepted)
        << textOf(form, "m_pLabError").toStdString();

    const QByteArray body = form.ComboUploadData();
    const QByteArray line = body.left(body.indexOf("\r\n") + 2);
    QByteArray texts;
    for (const QByteArray& part :
         {text("block_id", "{block}"), text("block_name", "采石场"), text("zone_id", "机场,1"),
          text("zone_id", "a\"b|\r\n--c"), text("applicant_name", "王小明 \"Ming\"; name=\"x\""),
          text("organisation", "Çelik & <b>Söhne</b>"), text("phone", "+86 (10) 1234-5678"),
          text("email", "ming@survey.example.cn"), text("aircraft_model", "VTOL 2"),
          text("aircraft_registration", "B-7%0A1"), text("purpose", "Quarry survey"),
          text("begin", "2091-03-01T08:05:00Z"), text("end", "2091-03-01T10:00:00Z"),
          text("max_height_m", "120"), text("remarks", "第一行\r\n--second--\r\n\r\n")})
        texts += line + part + "\r\n";
    EXPECT_EQ(body.left(texts.size()), texts);
    const QByteArray shot = body.mid(texts.size() + line.size());
    EXPECT_TRUE(shot.contains("filename=\"screenshot.png\"\r\nContent-Type: image/png\r\n\r\n"));
    EXPECT_TRUE(shot.endsWith("\r\n" + line.chopped(2) + "--\r\n"));
    EXPECT_EQ(
        QImage::fromData(shot.mid(shot.indexOf("\r\n\r\n") + 4), "PNG").convertToFormat(QImage::Format_RGB32),
        picture);
    EXPECT_EQ(form.ComboUploadData(), body);

    EXPECT_EQ(execAnd(form, [&form] { press(form, "m_pBtnCancel"); }), QDialog::Rejected);
    EXPECT_TRUE(form.ComboUploadData().isEmpty()) << "cancelled the second time";
    ASSERT_EQ(execAnd(form,
                      [&form] {
                          form.SetScreenShotsImage(QImage());
                          press(form, "m_pBtnOK");
                      }),
              QDialog::Accepted);
    const QByteArray plain = form.ComboUploadData();
    EXPECT_EQ(plain.count("Content-Disposition"), 15) << "without a picture and an area";
    EXPECT_FALSE(plain.contains("screenshot") || plain.contains("geojson"));
}

TEST_F(ApplyForm, CarriesTheAreaAsGeoJson)
{
    const struct
    {
        QList<QPointF> ring;
        const char *type, *coordinates; // empty: no area
    } rows[] = {
        {{{60, 45}, {60, 46}, {61, 46}, {61, 45}}, "Polygon", "[[[61,45],[61,46],[60,46],[60,45],[61,45]]]"},
        {{{179, 1}, {-178, 1}, {-178, 2}, {179, 2}},
         "MultiPolygon",
         "[[[[179,1],[180,1],[180,2],[179,2],[179,1]]],[[[-180,1],[-178,1],[-178,2],[-180,2],[-180,1]]]]"},
        {{{-179, 1}, {-179, 2}, {178, 2}, {178, 1}},
         "MultiPolygon",
         "[[[[180,2],[178,2],[178,1],[180,1],[180,2]]],[[[-179,1],[-179,2],[-180,2],[-180,1],[-179,1]]]]"},
        {{{-180, 1}, {-179, 1}, {-179, 2}}, "Polygon", "[[[-180,1],[-179,1],[-179,2],[-180,1]]]"},
        {{{1, 1}, {2, 2}}, "", ""},
        {{{1, 1}, {2, 2}, {qQNaN(), 3}}, "", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.coordinates);
        CAxNoflyApplyWgt form(QStringLiteral("id"), {QStringLiteral("7")});
        form.SetArea(row.ring);
        fill(form);
        ASSERT_EQ(execAnd(form, [&form] { press(form, "m_pBtnOK"); }), QDialog::Accepted);
        const QByteArray body = form.ComboUploadData();
        const QByteArray head = "filename=\"area.geojson\"\r\nContent-Type: application/geo+json\r\n\r\n";
        ASSERT_EQ(body.contains(head), *row.type != 0);
        if (!*row.type)
            continue;
        const QByteArray file = body.mid(body.indexOf(head) + head.size());
        const QJsonObject feature = QJsonDocument::fromJson(file.left(file.indexOf("\r\n"))).object();
        EXPECT_EQ(feature["type"], QStringLiteral("Feature"));
        EXPECT_EQ(feature["properties"].toObject()["block_id"], QStringLiteral("id"));
        const QJsonObject geometry = feature["geometry"].toObject();
        EXPECT_EQ(geometry["type"], QLatin1String(row.type));
        EXPECT_EQ(QJsonDocument(geometry["coordinates"].toArray()).toJson(QJsonDocument::Compact),
                  QByteArray(row.coordinates));
    }
}

TEST_F(ApplyForm, StaysOpenAndPointsAtTheEntryThatIsMissingOrWrong)
{
    const struct
    {
        const char* field;
        const char* value;
        const char* message;
    } rows[] = {
        {"m_pName", " ", "\"Name\" must be filled in."},
        {"m_pPhone", "", "\"Phone\" must be filled in."},
        {"m_pPhone", "call me", "\"Phone\" is no telephone number"},
        {"m_pPhone", "+1", "\"Phone\" is no telephone number"},
        {"m_pEMail", "ming@", "\"E-mail\" is no address"},
        {"m_pEMail", "a b@c.de", "\"E-mail\" is no address"},
        {"m_pModel", "", "\"Model\" must be filled in."},
        {"m_pRegistration", "", "\"Registration\" must be filled in."},
        {"m_pPurpose", "", "\"Purpose\" must be filled in."},
        {"m_pBegin", "2001-01-01T00:00:00Z", "\"Begin (UTC)\" lies in the past."},
        {"m_pEnd", "2091-03-01T08:05:00Z", "\"End (UTC)\" must be later than \"Begin (UTC)\"."},
        {"m_pMaxHeight", "", "\"Max. height above ground (m)\" must be filled in."},
        {"m_pMaxHeight", "0", "\"Max. height above ground (m)\" must be a whole number"},
        {"m_pMaxHeight", "1e3", "\"Max. height above ground (m)\" must be a whole number"},
        {"m_pMaxHeight", "10001", "\"Max. height above ground (m)\" must be a whole number"},
    };
    CAxNoflyApplyWgt form(QStringLiteral("id"), {QStringLiteral("7")});
    const auto tryAll = [&] {
        QApplication::setActiveWindow(&form);
        const QSize size = form.size();
        for (const auto& row : rows) {
            SCOPED_TRACE(row.message);
            fill(form);
            auto* const field = child<QWidget>(form, row.field);
            if (auto* const time = qobject_cast<QDateTimeEdit*>(field))
                time->setDateTime(QDateTime::fromString(QString::fromLatin1(row.value), Qt::ISODate));
            else
                write(form, row.field, QString::fromLatin1(row.value));
            press(form, "m_pBtnOK");
            ASSERT_TRUE(form.isVisible());
            EXPECT_TRUE(textOf(form, "m_pLabError").startsWith(QLatin1String(row.message)))
                << textOf(form, "m_pLabError").toStdString();
            EXPECT_TRUE(field->hasFocus());
            QCoreApplication::processEvents();
            EXPECT_EQ(form.size(), size) << "it does not grow under the mouse";
            const auto* said = child<QLabel>(form, "m_pLabError");
            EXPECT_LE(said->heightForWidth(said->width()), said->parentWidget()->height());
        }
        fill(form);
        child<QPlainTextEdit>(form, "m_pRemarks")->setPlainText(QString(2001, QLatin1Char('x')));
        press(form, "m_pBtnOK");
        EXPECT_TRUE(textOf(form, "m_pLabError").startsWith(QLatin1String("\"Remarks\"")));
        form.reject();
    };
    EXPECT_EQ(execAnd(form, tryAll), QDialog::Rejected);
    EXPECT_TRUE(form.ComboUploadData().isEmpty());
}

TEST_F(ApplyForm, KeepsWhatWasTypedUntilItWasSent)
{
    const auto typed = [] {
        const CAxNoflyApplyWgt form(QStringLiteral("other"), {});
        QStringList values;
        for (const char* const name : {"m_pName", "m_pModel", "m_pPurpose", "m_pMaxHeight"})
            values += child<QLineEdit>(form, name)->text().trimmed();
        values += child<QPlainTextEdit>(form, "m_pRemarks")->toPlainText().trimmed();
        values += child<QDateTimeEdit>(form, "m_pEnd")->dateTime() == End ? QStringLiteral("end") : QString();
        return values.join(QLatin1Char('|'));
    };
    const QString person = QString::fromUtf8("王小明 \"Ming\"; name=\"x\"|VTOL 2|");
    const QString all = person + QString::fromUtf8("Quarry survey|120|第一行\n--second--|end");
    for (const char* const button : {"m_pBtnCancel", "m_pBtnOK"}) {
        CAxNoflyApplyWgt::ForgetInput();
        EXPECT_EQ(typed(), QStringLiteral("|||||"));
        CAxNoflyApplyWgt form(QStringLiteral("id"), {QStringLiteral("7")});
        fill(form);
        execAnd(form, [&] { press(form, button); });
        EXPECT_EQ(typed(), all) << button;
    }
    CAxNoflyApplyWgt::ForgetFlight();
    EXPECT_EQ(typed(), person + QStringLiteral("|||"));
}

TEST_F(ApplyUpload, SendsTheVeryBytesShowsProgressAndIsAcceptedOnceAnswered)
{
    const QByteArray body = someBody(8 << 20);
    CAxNoflyApplyUpload upload;
    auto* const bar = child<QProgressBar>(upload, "m_pBar");
    QList<int> steps;
    QObject::connect(bar, &QProgressBar::valueChanged, &upload, [&steps](int value) { steps += value; });
    bool answeredFirst = true;
    QObject::connect(bar, &QProgressBar::valueChanged, &upload, [&](int value) {
        answeredFirst = answeredFirst && (value < bar->maximum() || server.bodies.size() == 1);
    });
    upload.BeginUpload(body);
    EXPECT_EQ(upload.exec(true), QDialog::Accepted);
    EXPECT_EQ(upload.AnswerText(), QStringLiteral("Number 4711"));
    ASSERT_EQ(server.bodies.size(), 1);
    EXPECT_TRUE(server.bodies[0] == body);
    EXPECT_TRUE(server.heads[0].startsWith("POST /apply HTTP/1.1\r\n"));
    EXPECT_TRUE(server.heads[0].contains("Content-Type: multipart/form-data; boundary=\"edge\"\r\n"));
    EXPECT_GT(steps.size(), 3);
    EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end()));
    EXPECT_TRUE(answeredFirst) << "the last step is the answer";
}

TEST_F(ApplyUpload, FailuresSaySoKeepTheFormAndRetrySendsTheSameBytes)
{
    const auto reply = &LoopbackFormServer::reply;
    const QByteArray longText = "start " + QByteArray(200000, 'y');
    const struct
    {
        Manner manner;
        QByteArray answer;
        QStringList says;
    } rows[] = {
        {Manner::Answer,
         reply("403 Forbidden", "text/plain; charset=gbk", QByteArray("\xbd\xfb\xd6\xb9\0\x07!", 7), {}),
         {QStringLiteral("(status 403)"), QString::fromUtf8("The server says: 禁止!")}},
        {Manner::Answer,
         reply("500 Internal Server Error", "text/html",
               "<html><style>p{}</style><p>Out of <b>order</b></p></html>", {}),
         {QStringLiteral("(status 500)"), QStringLiteral("Out of order")}},
        {Manner::Answer,
         reply("413 Too Large", "text/plain", longText, {}),
         {QStringLiteral("(status 413)"), QStringLiteral("start yyy")}},
        {Manner::Answer,
         reply("401 Unauthorized", "image/png", "\x89PNG", {}),
         {QStringLiteral("(status 401)")}},
        {Manner::Answer,
         reply("307 Temporary Redirect", "text/plain", "", "Location: http://127.0.0.1:1/there\r\n"),
         {QStringLiteral("not followed: http://127.0.0.1:1/there")}},
        {Manner::Answer, "\x16\x03 nonsense\r\n\r\n", {QStringLiteral("may have arrived")}},
        {Manner::Hang, {}, {QStringLiteral("does not answer"), QStringLiteral("may have arrived")}},
        {Manner::DropInRequest, {}, {QStringLiteral("connection to 127.0.0.1 was lost")}},
        {Manner::DropInAnswer,
         reply("200 OK", "text/plain", "Taken.", {}),
         {QStringLiteral("was lost"), QStringLiteral("may have arrived")}},
    };
    CAxNoflyApplyWgt form(QStringLiteral("id"), {QStringLiteral("7")});
    fill(form);
    form.SetScreenShotsImage(QImage(64, 64, QImage::Format_RGB32));
    execAnd(form, [&form] { press(form, "m_pBtnOK"); });
    const QByteArray body = form.ComboUploadData();
    const auto keptPurpose = [] {
        return child<QLineEdit>(CAxNoflyApplyWgt(QString(), {}), "m_pPurpose")->text();
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.says[0].toStdString());
        CAxNoflyApplyUpload::SetStallTimeout(row.manner == Manner::Hang ? 1000 : 30000);
        server.manner = row.manner;
        server.answer = row.answer;
        execAnd(form, [&form] { press(form, "m_pBtnCancel"); });
        CAxNoflyApplyUpload upload;
        int result = -1;
        const auto retry = [&] {
            ASSERT_TRUE(ended(upload));
            const QString said = textOf(upload, "m_pLabText");
            for (const QString& part : row.says)
                EXPECT_TRUE(said.contains(part)) << said.toStdString();
            EXPECT_LT(said.size(), 800);
            EXPECT_TRUE(upload.isVisible());
            EXPECT_TRUE(child<QProgressBar>(upload, "m_pBar")->isHidden());
            EXPECT_EQ(keptPurpose(), QStringLiteral("Quarry survey"));
            CAxNoflyApplyUpload::SetStallTimeout(30000);
            server.manner = Manner::Answer;
            server.answer = LoopbackFormServer::reply("204 No Content", "text/plain", "");
            server.bodies.clear();
            press(upload, "m_pBtnRetry");
        };
        QTimer::singleShot(0, &upload, retry);
        upload.BeginUpload(body);
        result = upload.exec(true);
        EXPECT_EQ(result, QDialog::Accepted);
        ASSERT_EQ(server.bodies.size(), 1);
        EXPECT_TRUE(server.bodies[0] == body);
        EXPECT_EQ(keptPurpose(), QString()) << "sent";
        EXPECT_EQ(server.heads.last().count("Idempotency-Key"), 1);
    }
}

TEST_F(ApplyUpload, SaysWhyNothingCouldBeSent)
{
    const QString open = server.url().toString();
    QTcpServer closed;
    closed.listen(QHostAddress::LocalHost);
    const QString gone = QStringLiteral("http://127.0.0.1:%1/").arg(closed.serverPort());
    closed.close();
    const struct
    {
        QString url;
        QByteArray body;
        const char* says;
        bool tries; // and may try again
    } rows[] = {
        {gone, someBody(), "127.0.0.1 does not take connections.", true},
        {QStringLiteral("http://no-such-host.invalid/"), someBody(), "no-such-host.invalid was found", true},
        {QString(open).replace(QStringLiteral("http:"), QStringLiteral("https:")), someBody(), "127.0.0.1",
         true},
        {QString(), someBody(), "No address is set up", false},
        {QStringLiteral("ftp://127.0.0.1/"), someBody(), "no http or https address", false},
        {QStringLiteral("file:///tmp/a"), someBody(), "no http or https address", false},
        {open, QByteArray(), "no complete application", false},
        {open, someBody().chopped(3), "no complete application", false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.says);
        const int before = server.connections;
        CAxNoflyApplyUpload::SetUploadUrl(QUrl(row.url));
        CAxNoflyApplyUpload upload;
        upload.BeginUpload(row.body);
        ASSERT_TRUE(ended(upload));
        EXPECT_TRUE(textOf(upload, "m_pLabText").contains(QLatin1String(row.says)))
            << textOf(upload, "m_pLabText").toStdString();
        if (row.tries)
            EXPECT_FALSE(child<QPushButton>(upload, "m_pBtnRetry")->isHidden());
        else
            EXPECT_EQ(server.connections, before);
        QTimer::singleShot(0, &upload, [&upload] { press(upload, "m_pBtnOK"); });
        EXPECT_EQ(upload.exec(true), QDialog::Rejected) << "closed, but nothing was sent";
        EXPECT_TRUE(server.bodies.isEmpty());
    }
}

TEST_F(ApplyUpload, CancellingAndLeavingEndTheConnectionAndLateAnswersDoNothing)
{
    server.manner = Manner::Hang;
    const auto arrived = [this] {
        return QTest::qWaitFor([this] { return !server.bodies.isEmpty(); }, 20000);
    };
    const auto hungUp = [this] { return QTest::qWaitFor([this] { return server.latest.isNull(); }, 20000); };
    {
        CAxNoflyApplyUpload upload;
        upload.BeginUpload(someBody());
        QTimer::singleShot(0, &upload, [&] {
            ASSERT_TRUE(arrived());
            server.latest->write(server.answer);
            server.latest->waitForBytesWritten();
            press(upload, "m_pBtnCancel");
        });
        EXPECT_EQ(upload.exec(true), QDialog::Rejected);
        EXPECT_TRUE(hungUp());
        EXPECT_TRUE(upload.AnswerText().isEmpty());
        EXPECT_EQ(upload.result(), QDialog::Rejected);
    }
    server.bodies.clear();
    auto upload = std::make_unique<CAxNoflyApplyUpload>();
    upload->BeginUpload(someBody());
    ASSERT_TRUE(arrived());
    upload.reset();
    EXPECT_TRUE(hungUp());
}

TEST_F(ApplyUpload, AServerThatStopsReadingIsGivenUp)
{
    server.manner = Manner::StopReading;
    CAxNoflyApplyUpload::SetStallTimeout(300);
    CAxNoflyApplyUpload upload;
    upload.BeginUpload(someBody(24 << 20));
    ASSERT_TRUE(ended(upload));
    EXPECT_TRUE(textOf(upload, "m_pLabText").contains(QLatin1String("does not answer")));
    EXPECT_FALSE(textOf(upload, "m_pLabText").contains(QLatin1String("may have arrived")));
}
