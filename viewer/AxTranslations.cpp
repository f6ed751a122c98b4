#include "viewer/AxTranslations.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QTranslator>

#include <memory>

namespace {
bool Install(std::unique_ptr<QTranslator> translator, bool isLoaded)
{
    if (!isLoaded || !QCoreApplication::installTranslator(translator.get()))
        return false;
    translator.release()->setParent(QCoreApplication::instance());
    return true;
}
} // namespace

int AxInstallTranslations(const QLocale& locale)
{
    if (locale.language() != QLocale::Chinese)
        return 0;
    int installed = 0;
    const QDir texts(QStringLiteral(":/i18n"));
    for (const QString& file : texts.entryList({QStringLiteral("*_zh_CN.qm")})) {
        auto translator = std::make_unique<QTranslator>();
        const bool isLoaded = translator->load(texts.filePath(file));
        installed += Install(std::move(translator), isLoaded) ? 1 : 0;
    }
    // Qt's own buttons and file dialogs, where Qt's translations are installed.
    auto ofQt = std::make_unique<QTranslator>();
    const bool isLoaded =
        ofQt->load(QLocale(QStringLiteral("zh_CN")), QStringLiteral("qtbase"), QStringLiteral("_"),
                   QLibraryInfo::location(QLibraryInfo::TranslationsPath));
    installed += Install(std::move(ofQt), isLoaded) ? 1 : 0;
    return installed;
}
