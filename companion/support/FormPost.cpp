#include "support/FormPost.h"

#include "support/FormData.h"

#include <QCryptographicHash>
#include <QSslError>
#include <QTextCodec>
#include <QTextDocumentFragment>

namespace {
/// What is read of an answer; the rest of a longer one is of no interest.
constexpr int MaxAnswerBytes = 64 * 1024;
constexpr int MaxAnswerLetters = 400;
/// Longer words are broken so that they fit into a dialog.
constexpr int MaxWordLetters = 40;

FormPostResult::End endOf(QNetworkReply::NetworkError error)
{
    using End = FormPostResult::End;
    switch (error) {
    case QNetworkReply::HostNotFoundError:
        return End::NoHost;
    case QNetworkReply::ConnectionRefusedError:
        return End::NoServer;
    case QNetworkReply::SslHandshakeFailedError:
        return End::NotTrusted;
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
        return End::Interrupted;
    case QNetworkReply::TimeoutError:
        return End::Stalled;
    case QNetworkReply::ProtocolFailure:
        return End::NotAnAnswer;
    default:
        return End::Failed;
    }
}

/// The server understood and said no; other errors mean that no answer was had.
bool isRefusal(QNetworkReply::NetworkError error)
{
    return (error >= QNetworkReply::ContentAccessDenied && error <= QNetworkReply::UnknownContentError) ||
           (error >= QNetworkReply::InternalServerError && error <= QNetworkReply::UnknownServerError);
}

/// Letters and line breaks only, shortened.
QString readable(const QString& text)
{
    QString result;
    int word = 0;
    for (const QChar c : text.trimmed()) {
        if (result.size() >= MaxAnswerLetters)
            return result + QChar(0x2026);
        if (!c.isPrint() && !c.isSpace())
            continue;
        if (c.isSpace() && result.endsWith(c))
            continue;
        word = c.isSpace() ? 0 : word + 1;
        if (word > MaxWordLetters) {
            result += QChar(0x200b);
            word = 1;
        }
        result += c;
    }
    return result;
}
} // namespace

FormPost::FormPost(QObject* parent) : QObject(parent)
{
    m_stall.setSingleShot(true);
    connect(&m_stall, &QTimer::timeout, this, &FormPost::stall);
}

FormPost::~FormPost()
{
    abort();
}

void FormPost::send(const QUrl& url, const QByteArray& form)
{
    abort();
    m_answer.clear();
    m_tlsErrors.clear();
    m_whole = false;

    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader,
                      QByteArray("multipart/form-data; boundary=\"" + FormData::boundaryOf(form) + '"'));
    request.setRawHeader("Idempotency-Key",
                         '"' + QCryptographicHash::hash(form, QCryptographicHash::Sha256).toHex() + '"');
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    m_reply = m_network.post(request, form);
    connect(m_reply, &QNetworkReply::uploadProgress, this, [this](qint64 sent, qint64 total) {
        if (total <= 0)
            return;
        m_stall.start();
        m_whole = sent >= total;
        emit progressed(sent, total);
    });
    connect(m_reply, &QNetworkReply::readyRead, this, &FormPost::readAnswer);
    connect(m_reply, &QNetworkReply::finished, this, &FormPost::finish);
    connect(m_reply, &QNetworkReply::sslErrors, this, [this](const QList<QSslError>& errors) {
        QStringList texts;
        for (const QSslError& error : errors)
            texts += error.errorString();
        m_tlsErrors = texts.join(QLatin1Char('\n'));
    });
    m_stall.start();
}

void FormPost::abort()
{
    m_stall.stop();
    if (!m_reply)
        return;
    QNetworkReply* const reply = m_reply;
    m_reply.clear();
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

void FormPost::readAnswer()
{
    // An answer without end is no progress.
    if (m_answer.size() < MaxAnswerBytes)
        m_stall.start();
    m_answer += m_reply->readAll().left(MaxAnswerBytes - m_answer.size());
}

void FormPost::finish()
{
    FormPostResult result;
    const QNetworkReply::NetworkError error = m_reply->error();
    result.status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QUrl elsewhere = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (error != QNetworkReply::NoError && !isRefusal(error)) {
        result.end = endOf(error);
        result.detail = m_tlsErrors.isEmpty() ? m_reply->errorString() : m_tlsErrors;
    } else if (elsewhere.isValid()) {
        result.end = FormPostResult::End::Redirected;
        result.detail = m_reply->url().resolved(elsewhere).toDisplayString(QUrl::RemoveUserInfo);
    } else {
        result.end = FormPostResult::End::Answered;
    }
    end(result);
}

void FormPost::stall()
{
    FormPostResult result;
    result.end = FormPostResult::End::Stalled;
    end(result);
}

void FormPost::end(FormPostResult result)
{
    result.whole = m_whole;
    result.text = answerText();
    abort();
    emit ended(result);
}

QString FormPost::answerText() const
{
    const QString type = m_reply->header(QNetworkRequest::ContentTypeHeader).toString().toLower();
    const bool html = type.startsWith(QLatin1String("text/html"));
    const bool json = type.startsWith(QLatin1String("application/")) && type.contains(QLatin1String("json"));
    if (!type.isEmpty() && !type.startsWith(QLatin1String("text/")) && !json)
        return {};
    const QByteArray charset = type.section(QStringLiteral("charset="), 1)
                                   .section(QLatin1Char(';'), 0, 0)
                                   .remove(QLatin1Char('"'))
                                   .trimmed()
                                   .toLatin1();
    QTextCodec* const named = charset.isEmpty() ? nullptr : QTextCodec::codecForName(charset);
    QTextCodec* const codec = named ? named : QTextCodec::codecForName("UTF-8");
    const QString text = codec->toUnicode(m_answer);
    return readable(html ? QTextDocumentFragment::fromHtml(text).toPlainText() : text);
}
