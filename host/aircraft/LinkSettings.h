#pragma once
#include <QByteArray>
#include <QString>

#include <optional>

/// Where aircraft are to be heard, as the panel asks for it and keeps it. A value. The key that signs
/// messages is no part of it, so that no file keeps one.
struct LinkSettings
{
    enum class Kind
    {
        Simulator,
        Udp,
        Tcp,
        Serial,
        File
    };
    Kind kind = Kind::Simulator;
    double speed = 1.0;     ///< times, of the simulator
    double windSpeed = 0.0; ///< m/s
    double windFrom = 0.0;  ///< degrees clockwise from north
    int udpPort = 14550;
    QString tcpHost = QStringLiteral("127.0.0.1");
    int tcpPort = 5760;
    QString serialPort;
    int baud = 57600;     ///< bits a second
    QString file;         ///< a recorded flight
    QString recordFolder; ///< empty: the usual one

    /// For settings files; what cannot be used of them is as in a new one.
    QByteArray ToBytes() const;
    static LinkSettings FromBytes(const QByteArray& bytes);

    /// Where flights are recorded: the folder, or the usual one.
    QString RecordFolder() const;
};

/// The 32 bytes of a key that signs messages: they themselves as the contents of a file, or 64 hexadecimal
/// digits, with blanks, colons or dashes between them if any. Nothing for anything else.
std::optional<QByteArray> ParseSigningKey(const QByteArray& contents);
