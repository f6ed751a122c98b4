#pragma once
#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <memory>

/**
 * Work that takes long, on a thread of its own: of several pieces the latest, whose result alone arrives. GUI
 * thread. Its end calls the work off and waits for it.
 */
class AxLatestWork : public QObject
{
public:
    AxLatestWork()
    {
        thread.setMaxThreadCount(1);
        // A piece may lower its thread's priority, and systems do not let everybody raise it again.
        thread.setExpiryTimeout(0);
    }
    ~AxLatestWork() override
    {
        CallOff();
        thread.waitForDone();
    }

    /// Calls the former piece off. `make` is copied to the other thread and is to end soon after its
    /// argument, a std::atomic<bool>, turns true; `done` is given what it returns, on the GUI thread.
    template <typename Make, typename Done> void Start(Make make, Done done)
    {
        CallOff();
        const auto off = std::make_shared<std::atomic<bool>>(false);
        isOff = off;
        thread.start([this, off, make = std::move(make), done = std::move(done)] {
            if (*off)
                return;
            const auto result = std::make_shared<decltype(make(*off))>(make(*off));
            const auto deliver = [this, off, done, result] {
                if (*off)
                    return;
                isOff.reset();
                done(std::move(*result));
            };
            QMetaObject::invokeMethod(this, deliver, Qt::QueuedConnection);
        });
    }
    void CallOff()
    {
        if (isOff)
            *isOff = true;
        isOff.reset();
    }
    bool IsBusy() const { return isOff != nullptr; }

private:
    QThreadPool thread;
    std::shared_ptr<std::atomic<bool>> isOff; ///< of the piece whose result is awaited
};
