#pragma once

#include <AxBaseUI/AxBaseUIExport.h>
#include <AxBaseUI/CAxProgressWgt.h>

#include <QByteArray>
#include <QUrl>

class FormPost;
struct FormPostResult;

/// Sends an application to fly in no-fly zones over HTTP and shows how that goes. exec() returns Accepted
/// only for an application that the server took, that is, answered with a status from 200 to 299.
///
/// Cancel and closing end the sending. After a failure the display says what happened and offers Retry,
/// which sends the same bytes again, and Close. The post carries a header "Idempotency-Key" of the bytes,
/// so that a server can tell a repetition from a second application. Redirections are not followed.
/// Success lets the form's entries for this flight go (CAxNoflyApplyWgt::ForgetFlight). GUI thread only.
class AXBASEUI_EXPORT CAxNoflyApplyUpload : public CAxProgressWgt
{
    Q_OBJECT

public:
    explicit CAxNoflyApplyUpload(QWidget* parent = nullptr);

    /// Where applications of this process are posted: an http or https address. Without one, as at first,
    /// nothing is sent and the display says so.
    static void SetUploadUrl(const QUrl& url);
    static QUrl UploadUrl();
    /// How long nothing may move in either direction before sending is given up, in milliseconds; 30 s at
    /// first. Holds for uploads begun afterwards.
    static void SetStallTimeout(int milliseconds);

    /// Begins to send a body made by CAxNoflyApplyWgt::ComboUploadData, which names its own boundary in its
    /// first line. Anything else is refused with a text. A running upload is ended first.
    void BeginUpload(const QByteArray& body);

    /// What the server answered, as plain text and shortened; empty before an answer.
    QString AnswerText() const { return m_answerText; }

public slots:
    void done(int result) override;

protected slots:
    void slotBtnAcceptClicked() override;

private:
    void send();
    void showProgress(qint64 sent, qint64 total);
    void showEnd(const FormPostResult& result);
    void fail(const QString& text, bool retry);
    QString failureText(const FormPostResult& result) const;

    FormPost* m_post;
    QByteArray m_body;
    QString m_answerText;
    bool m_sent = false;
};
