#pragma once

#include <AxTelemetry/mavlink/AxMavFrame.h>

#include <cstring>
#include <type_traits>

constexpr quint8 axMavMagic1 = 0xFE; ///< first byte of a frame of version 1
constexpr quint8 axMavMagic2 = 0xFD;
constexpr quint8 axMavIsSigned = 0x01; ///< the one incompatible flag there is
constexpr int axMavHeader1 = 6;        ///< bytes before the payload
constexpr int axMavHeader2 = 10;
constexpr int axMavMostFrame = 280; ///< bytes: header, payload, checksum, signature

/// Numbers in a payload: little-endian and anywhere, on any machine.
template <class Bits> Bits AxMavLoad(const quint8* bytes)
{
    quint64 value = 0;
    for (std::size_t i = 0; i < sizeof(Bits); ++i)
        value |= quint64(bytes[i]) << (8 * i);
    return static_cast<Bits>(value);
}

template <class Bits> void AxMavStore(Bits value, quint8* bytes)
{
    for (std::size_t i = 0; i < sizeof(Bits); ++i)
        bytes[i] = static_cast<quint8>(quint64(value) >> (8 * i));
}

/// The bits of a number, of its size.
template <std::size_t size>
using AxMavBits = std::conditional_t<
    size == 8, quint64,
    std::conditional_t<size == 4, quint32, std::conditional_t<size == 2, quint16, quint8>>>;

/// Visits the fields of a message and takes them from a payload.
struct AxMavReader
{
    const quint8* at;

    template <class T> void operator()(const char* /*name*/, T& value)
    {
        const auto bits = AxMavLoad<AxMavBits<sizeof(T)>>(at);
        std::memcpy(&value, &bits, sizeof(T));
        at += sizeof(T);
    }
    template <class T, std::size_t length> void operator()(const char* name, std::array<T, length>& values)
    {
        for (T& value : values)
            (*this)(name, value);
    }
};

/// Visits the fields of a message and writes them into a payload.
struct AxMavPutter
{
    quint8* at;

    template <class T> void operator()(const char* /*name*/, const T& value)
    {
        AxMavBits<sizeof(T)> bits;
        std::memcpy(&bits, &value, sizeof(T));
        AxMavStore(bits, at);
        at += sizeof(T);
    }
    template <class T, std::size_t length>
    void operator()(const char* name, const std::array<T, length>& values)
    {
        for (const T& value : values)
            (*this)(name, value);
    }
};

template <class Message> bool AxMavRead(const AxMavFrame& frame, Message& message)
{
    if (frame.messageId != Message::id)
        return false;
    Message::Visit(message, AxMavReader{frame.payload.data()});
    return true;
}

template <class Message> int AxMavPut(const Message& message, quint8* payload)
{
    Message::Visit(message, AxMavPutter{payload});
    return Message::size;
}
