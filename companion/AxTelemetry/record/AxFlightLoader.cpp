#include <AxTelemetry/record/AxFlightCsv.h>
#include <AxTelemetry/record/AxFlightLoader.h>
#include <AxTelemetry/record/AxRecordText.h>
#include <AxTelemetry/record/AxTlogReader.h>

#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QThread>

#include <algorithm>

/// What a thread reads for, as long as somebody wants it.
struct AxFlightLoader::Order
{
    QMutex mutex;
    AxFlightLoader* loader = nullptr; // null once it is cancelled

    bool IsWanted()
    {
        const QMutexLocker lock(&mutex);
        return loader != nullptr;
    }
    template <typename Call> void Post(const std::shared_ptr<Order>& self, Call call)
    {
        const QMutexLocker lock(&mutex);
        if (!loader)
            return;
        AxFlightLoader* const to = loader;
        QMetaObject::invokeMethod(
            to,
            [to, self, call] {
                if (to->m_order == self)
                    call(*to);
            },
            Qt::QueuedConnection);
    }
};

AxFlightLoader::AxFlightLoader(QObject* parent) : QObject(parent)
{
    qRegisterMetaType<AxFlightRead>();
}

AxFlightLoader::~AxFlightLoader()
{
    Cancel();
    for (const auto& thread : m_threads)
        thread->wait();
}

void AxFlightLoader::Load(const QString& path, const QByteArray& key)
{
    Cancel();
    m_threads.erase(std::remove_if(m_threads.begin(), m_threads.end(),
                                   [](const auto& thread) { return thread->isFinished() && thread->wait(); }),
                    m_threads.end());
    const auto order = std::make_shared<Order>();
    order->loader = this;
    m_order = order;
    m_threads.emplace_back(QThread::create([order, path, key] {
        int told = -1;
        const AxReadProgress progress = [&](double share) {
            const int percent = static_cast<int>(share * 100.0);
            if (percent != told)
                order->Post(order,
                            [percent](AxFlightLoader& loader) { emit loader.signalProgress(percent); });
            told = percent;
            return order->IsWanted();
        };
        const AxFlightRead read = AxReadFlights(path, progress, key);
        order->Post(order, [read](AxFlightLoader& loader) {
            loader.m_order.reset();
            emit loader.signalLoaded(read);
        });
    }));
    m_threads.back()->start();
}

void AxFlightLoader::Cancel()
{
    if (!m_order)
        return;
    const std::shared_ptr<Order> order = std::move(m_order);
    m_order.reset();
    const QMutexLocker lock(&order->mutex);
    order->loader = nullptr;
}

AxFlightRead AxReadFlights(const QString& path, const AxReadProgress& progress, const QByteArray& key)
{
    AxFlightRead read;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        read.fault = AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "%1: cannot be read: %2"))
                         .arg(path, file.errorString());
        return read;
    }
    // A time in microseconds begins with a zero byte for the next 2000 years, and no text does.
    const bool isText = !file.peek(16).contains('\0');
    read = isText ? AxReadFlightCsv(file, progress) : AxReadTlog(file, progress, key);
    if (!read.fault.isEmpty())
        read.fault = QFileInfo(path).fileName() + QStringLiteral(": ") + read.fault;
    else if (file.error() != QFileDevice::NoError)
        read.notes << AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "The file was not read to its end: %1"))
                          .arg(file.errorString());
    return read;
}
