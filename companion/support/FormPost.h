#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

/// How the sending of a form ended.
struct FormPostResult
{
    enum class End
    {
        Answered,    ///< the server's whole answer is here, whatever its status says
        Redirected,  ///< the server names another address, which is not followed
        Stalled,     ///< nothing moved for too long
        NoHost,      ///< the server's name is unknown
        NoServer,    ///< nobody takes the connection
        NotTrusted,  ///< no encrypted connection that can be trusted
        Interrupted, ///< the connection ended before the whole answer was here
        NotAnAnswer, ///< what came is no HTTP
        Failed       ///< another failure, described by `detail`
    };
    End end = End::Failed;
    int status = 0;     ///< of the HTTP answer; 0 when none came
    bool whole = false; ///< the form had left completely
    QString detail;     ///< the network's own words, or the address of a redirection
    QString text;       ///< the answer as plain text, shortened; empty for pictures and the like
};

/// Posts a form (FormData) and reports how that goes; one at a time. Owned by its Qt parent; its thread's.
///
/// Redirections are not followed: a form goes to the address it was meant for and nowhere else. Each form
/// carries a header Idempotency-Key, which is the same when the same form is sent again, so that a server
/// can tell a repetition from a second application.
class FormPost : public QObject
{
    Q_OBJECT

public:
    explicit FormPost(QObject* parent);
    ~FormPost() override;

    void setStallLimit(int milliseconds) { m_stall.setInterval(milliseconds); }

    /// Ends a running post as abort() does and begins this one.
    void send(const QUrl& url, const QByteArray& form);
    /// Ends the running post without a further signal. Harmless when there is none.
    void abort();

signals:
    void progressed(qint64 sent, qint64 total);
    void ended(const FormPostResult& result);

private:
    void readAnswer();
    void finish();
    void stall();
    void end(FormPostResult result);
    QString answerText() const;

    QNetworkAccessManager m_network;
    QPointer<QNetworkReply> m_reply;
    QTimer m_stall;
    QByteArray m_answer;
    QString m_tlsErrors;
    bool m_whole = false;
};
