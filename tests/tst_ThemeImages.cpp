#include "plugincore/KVAdjustmentWidget.h"
#include "theme/ThemeImages.h"
#include "utilities/KVStringHelper.h"

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QTest>

#include <cmath>

/// Run on screens with one, one and a half and two device pixels to the unit.
class TestThemeImages : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QDir::setSearchPaths(QStringLiteral("theme"), {}); }

    void AnAdjustmentWidgetInstallsThem();
    void InstallingTwiceIsInstallingOnce();
    void AProgramsOwnImagesComeFirst();
    void EveryImageIsThereInBothSizes_data();
    void EveryImageIsThereInBothSizes();
};

void TestThemeImages::AnAdjustmentWidgetInstallsThem()
{
    QVERIFY(QPixmap(QStringLiteral("theme:picker_black.png")).isNull());
    const KVAdjustmentWidget widget;
    QVERIFY(!QPixmap(QStringLiteral("theme:picker_black.png")).isNull());
}

void TestThemeImages::InstallingTwiceIsInstallingOnce()
{
    ThemeImages::Install();
    ThemeImages::Install();
    QCOMPARE(QDir::searchPaths(QStringLiteral("theme")).size(), 1);
}

void TestThemeImages::AProgramsOwnImagesComeFirst()
{
    QDir::setSearchPaths(QStringLiteral("theme"), {QStringLiteral("/mine")});
    ThemeImages::Install();
    QCOMPARE(QDir::searchPaths(QStringLiteral("theme")).first(), QStringLiteral("/mine"));
    QVERIFY(!QPixmap(QStringLiteral("theme:picker_gray.png")).isNull());
}

void TestThemeImages::EveryImageIsThereInBothSizes_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"picker_black", "picker_gray", "picker_white", "picker_cursor",
                             "deletecurrentpath", "deletecurrentpath_disabled", "text_settings"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestThemeImages::EveryImageIsThereInBothSizes()
{
    QFETCH(QString, name);
    ThemeImages::Install();
    const QString plain = QStringLiteral("theme:%1.png").arg(name);
    QCOMPARE(QImage(plain).size(), QSize(16, 16));
    QCOMPARE(QImage(QStringLiteral("theme:%1@2x.png").arg(name)).size(), QSize(32, 32));
    // A screen between the two takes the finer one.
    const double finest = std::ceil(qGuiApp->devicePixelRatio());
    const QPixmap pixmap(KVStringHelper::DPIAdjustImageName(plain));
    QCOMPARE(pixmap.devicePixelRatio(), finest);
    QCOMPARE(pixmap.size(), QSize(16, 16) * finest);
    QVERIFY(pixmap.hasAlpha());
    QVERIFY(!QIcon(plain).isNull());
}

int main(int argc, char* argv[])
{
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    TestThemeImages test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_ThemeImages.moc"
