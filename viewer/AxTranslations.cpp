#include "viewer/AxTranslations.h"

#include <QCoreApplication>
#include <QDir>
#include <QTranslator>

int AxInstallTranslations(const QLocale& locale)
{
    if (locale.language() != QLocale::Chinese)
        return 0;
    int installed = 0;
    const QDir texts(QStringLiteral(":/i18n"));
    for (const QString& file : texts.entryList({QStringLiteral("*_zh_CN.qm")})) {
        auto* translator = new QTranslator(QCoreApplication::instance());
        if (translator->load(texts.filePath(file)) && QCoreApplication::installTranslator(translator))
            ++installed;
        else
            delete translator;
    }
    return installed;
}
