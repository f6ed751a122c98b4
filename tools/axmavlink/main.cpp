// axmavlink messages.json AxMavMessages.h AxMavMessages.cpp
#include "MessageCode.h"
#include "MessageTable.h"

#include <QFile>
#include <QStringList>

#include <cstdio>

namespace {
int Fail(const QString& file, const QString& fault)
{
    std::fprintf(stderr, "%s: error: %s\n", qPrintable(file), qPrintable(fault));
    return 1;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: axmavlink messages.json header.h source.cpp\n");
        return 2;
    }
    const QString table = QString::fromLocal8Bit(argv[1]);
    QFile input(table);
    if (!input.open(QIODevice::ReadOnly))
        return Fail(table, input.errorString());
    QString fault;
    const std::vector<axmavlink::Message> messages = axmavlink::ReadMessages(input.readAll(), fault);
    if (!fault.isEmpty())
        return Fail(table, fault);
    const QByteArray codes[] = {axmavlink::HeaderOf(messages), axmavlink::SourceOf(messages)};
    for (int i = 0; i < 2; ++i) {
        QFile output(QString::fromLocal8Bit(argv[2 + i]));
        if (!output.open(QIODevice::WriteOnly) || output.write(codes[i]) != codes[i].size() ||
            !output.flush())
            return Fail(output.fileName(), output.errorString());
    }
    return 0;
}
