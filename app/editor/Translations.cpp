#include "editor/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

void Translations::Install()
{
    auto* const own = new QTranslator(QCoreApplication::instance());
    const QString folder =
        QCoreApplication::applicationDirPath() + QLatin1String("/../share/adjustmentgui/translations");
    if (!own->load(QLocale(), QStringLiteral("adjustmentgui"), QStringLiteral("_"), folder))
        return; // half of the texts in another language would be worse than none
    QCoreApplication::installTranslator(own);
    auto* const qt = new QTranslator(QCoreApplication::instance());
    if (qt->load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                 QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(qt);
}
