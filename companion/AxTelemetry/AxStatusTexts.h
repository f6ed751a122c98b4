#pragma once

#include <QByteArray>

#include <functional>
#include <map>

struct AxMavStatustext;

/// Puts messages together that came in several parts of 50 bytes. Milliseconds.
class AxStatusTexts
{
public:
    using Tell = std::function<void(int severity, const QString& text)>;

    explicit AxStatusTexts(const Tell& tell) : m_tell(tell) {}

    void Take(int component, const AxMavStatustext& part, qint64 time);
    /// Tells what has waited for its next part for 1 s.
    void Flush(qint64 time);

private:
    struct Begun
    {
        int id = 0;
        int severity = 0;
        int nextPart = 0;
        qint64 time = 0; // of the latest part
        QByteArray text;
    };

    void tell(const Begun& begun, bool isWhole);

    Tell m_tell;
    std::map<int, Begun> m_begun; // by component
};
