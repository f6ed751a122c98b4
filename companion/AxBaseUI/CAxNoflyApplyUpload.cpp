#include <AxBaseUI/CAxNoflyApplyUpload.h>

#include <AxBaseUI/CAxNoflyApplyWgt.h>

#include "support/FormData.h"
#include "support/FormPost.h"

#include <QLocale>
#include <QPushButton>

namespace {
constexpr int DefaultStallTimeout = 30 * 1000;
/// The last step of the bar is the server's answer.
constexpr int BarSteps = 1000;

QUrl theUrl;
int theStallTimeout = DefaultStallTimeout;

bool isHttp(const QUrl& url)
{
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}
} // namespace

CAxNoflyApplyUpload::CAxNoflyApplyUpload(QWidget* parent)
    : CAxProgressWgt(tr("Application to fly"), parent), m_post(new FormPost(this))
{
    connect(m_post, &FormPost::progressed, this, &CAxNoflyApplyUpload::showProgress);
    connect(m_post, &FormPost::ended, this, &CAxNoflyApplyUpload::showEnd);
    connect(this, &CAxProgressWgt::signalRetry, this, &CAxNoflyApplyUpload::send);
    VisibleBtnClose(true);
}

void CAxNoflyApplyUpload::SetUploadUrl(const QUrl& url)
{
    theUrl = url;
}

QUrl CAxNoflyApplyUpload::UploadUrl()
{
    return theUrl;
}

void CAxNoflyApplyUpload::SetStallTimeout(int milliseconds)
{
    Q_ASSERT(milliseconds > 0);
    theStallTimeout = milliseconds;
}

void CAxNoflyApplyUpload::BeginUpload(const QByteArray& body)
{
    m_body = body;
    send();
}

void CAxNoflyApplyUpload::send()
{
    m_post->abort();
    m_sent = false;
    m_answerText.clear();
    SetMaxValue(BarSteps);
    SetValue(0);
    if (FormData::boundaryOf(m_body).isEmpty()) {
        fail(tr("There is no complete application to send. Nothing was sent."), false);
        return;
    }
    if (theUrl.isEmpty()) {
        fail(tr("No address is set up to which applications are sent. Nothing was sent."), false);
        return;
    }
    if (!isHttp(theUrl)) {
        fail(tr("Applications cannot be sent to \"%1\": it is no http or https address. Nothing was sent.")
                 .arg(theUrl.toDisplayString(QUrl::RemoveUserInfo)),
             false);
        return;
    }
    SetText(tr("Connecting to %1 ...").arg(theUrl.host()));
    VisibleBar(true);
    VisibleBtnRetry(false);
    VisibleBtnClose(false);
    VisibleBtnCannel(true);
    CancelButton()->setFocus();
    m_post->setStallLimit(theStallTimeout);
    m_post->send(theUrl, m_body);
}

void CAxNoflyApplyUpload::showProgress(qint64 sent, qint64 total)
{
    SetValue(static_cast<int>((BarSteps - 1) * sent / total));
    const QLocale locale;
    SetText(sent < total
                ? tr("Sent %1 of %2 ...").arg(locale.formattedDataSize(sent), locale.formattedDataSize(total))
                : tr("Waiting for the answer of %1 ...").arg(theUrl.host()));
}

void CAxNoflyApplyUpload::showEnd(const FormPostResult& result)
{
    m_answerText = result.text;
    m_sent = result.end == FormPostResult::End::Answered && result.status >= 200 && result.status < 300;
    if (!m_sent) {
        fail(failureText(result), true);
        return;
    }
    CAxNoflyApplyWgt::ForgetFlight();
    const QString said = m_answerText.isEmpty() ? QString() : tr("The server says: %1").arg(m_answerText);
    SetText((tr("The application was sent.") + QLatin1Char('\n') + said).trimmed());
    VisibleBtnCannel(false);
    SetValue(BarSteps);
}

void CAxNoflyApplyUpload::fail(const QString& text, bool retry)
{
    SetText(text);
    VisibleBar(false);
    VisibleBtnCannel(false);
    VisibleBtnRetry(retry);
    VisibleBtnClose(true);
    (retry ? RetryButton() : OKButton())->setFocus();
}

QString CAxNoflyApplyUpload::failureText(const FormPostResult& result) const
{
    using End = FormPostResult::End;
    const QString host = theUrl.host();
    QString text;
    switch (result.end) {
    case End::Answered:
        text = tr("%1 did not take the application (status %2).").arg(host).arg(result.status);
        break;
    case End::Redirected:
        text = tr("%1 sends applications on to another address, which is not followed: %2")
                   .arg(host, result.detail);
        break;
    case End::Stalled:
        text = tr("%1 does not answer.").arg(host);
        break;
    case End::NoHost:
        text = tr("No server with the name %1 was found. Is there a network connection?").arg(host);
        break;
    case End::NoServer:
        text = tr("%1 does not take connections.").arg(host);
        break;
    case End::NotTrusted:
        text = tr("The connection to %1 cannot be trusted: %2").arg(host, result.detail);
        break;
    case End::Interrupted:
        text = tr("The connection to %1 was lost.").arg(host);
        break;
    case End::NotAnAnswer:
        text = tr("The answer of %1 cannot be understood.").arg(host);
        break;
    case End::Failed:
        text = tr("The application could not be sent to %1: %2").arg(host, result.detail);
        break;
    }
    if (!m_answerText.isEmpty())
        text += QLatin1Char('\n') + tr("The server says: %1").arg(m_answerText);
    const bool answerMissing =
        result.end == End::Stalled || result.end == End::Interrupted || result.end == End::NotAnAnswer;
    if (result.whole && answerMissing)
        text += QLatin1Char('\n') + tr("The application may have arrived all the same.");
    return text + QLatin1Char('\n') + tr("Your entries are kept. Retry sends the same application again.");
}

void CAxNoflyApplyUpload::done(int result)
{
    m_post->abort();
    CAxProgressWgt::done(result);
}

void CAxNoflyApplyUpload::slotBtnAcceptClicked()
{
    if (m_sent)
        accept();
    else
        reject();
}
