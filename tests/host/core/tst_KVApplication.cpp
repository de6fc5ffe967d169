#include "core/KVApplication.h"

#include <QSettings>
#include <QStandardPaths>
#include <QTest>

class TestKVApplication : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { QSettings().clear(); }

    void SettingsHaveTheirKeys();
    void AValueThatWasNeverSetIsTheFallback();
    void ValuesAreRemembered();
    void TheTimeoutHasADefaultAndIsNeverNegative_data();
    void TheTimeoutHasADefaultAndIsNeverNegative();
    void ATimeoutThatIsNoNumberIsTheDefault();
    void FilesAreOpenedWhereTheLastOneWas();
    void DevicesAreUsedAsTheUserSays();
};

void TestKVApplication::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_KVApplication"));
}

void TestKVApplication::SettingsHaveTheirKeys()
{
    QVERIFY(!KVApplication::GetName(29).isEmpty());
    QCOMPARE(KVApplication::GetName(29), KVApplication::GetName(KVApplication::HidePreviewSlider));
    QVERIFY(KVApplication::GetName(28).isEmpty());
    QVERIFY(KVApplication::GetName(-1).isEmpty());
}

void TestKVApplication::AValueThatWasNeverSetIsTheFallback()
{
    QVERIFY(KVApplication::GetUserValue(QStringLiteral("never/set"), true));
    QVERIFY(!KVApplication::GetUserValue(QStringLiteral("never/set"), false));
}

void TestKVApplication::ValuesAreRemembered()
{
    const QString key = KVApplication::GetName(29);
    KVApplication::SetUserValue(key, true);
    QVERIFY(KVApplication::GetUserValue(key, false));
    KVApplication::SetUserValue(key, false);
    QVERIFY(!KVApplication::GetUserValue(key, true));
}

void TestKVApplication::TheTimeoutHasADefaultAndIsNeverNegative_data()
{
    QTest::addColumn<int>("set");
    QTest::addColumn<int>("expected");
    QTest::newRow("a while") << 1200 << 1200;
    QTest::newRow("at once") << 0 << 0;
    QTest::newRow("negative") << -5 << 0;
}

void TestKVApplication::TheTimeoutHasADefaultAndIsNeverNegative()
{
    QFETCH(int, set);
    QFETCH(int, expected);
    QCOMPARE(KVApplication::GetProgressTimeout(), 500);
    KVApplication::SetProgressTimeout(set);
    QCOMPARE(KVApplication::GetProgressTimeout(), expected);
}

void TestKVApplication::ATimeoutThatIsNoNumberIsTheDefault()
{
    KVApplication::SetProgressTimeout(7);
    QSettings settings;
    const QStringList keys = settings.allKeys();
    QCOMPARE(keys.size(), 1);
    settings.setValue(keys.first(), QStringLiteral("soon"));
    QCOMPARE(KVApplication::GetProgressTimeout(), 500);
}

void TestKVApplication::FilesAreOpenedWhereTheLastOneWas()
{
    QCOMPARE(KVApplication::GetPathOpen(),
             QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    KVApplication::SetPathOpen(QStringLiteral("/photos/2026"));
    QCOMPARE(KVApplication::GetPathOpen(), QStringLiteral("/photos/2026"));
}

void TestKVApplication::DevicesAreUsedAsTheUserSays()
{
    QCOMPARE(KVApplication::GetGpuUse(), QStringLiteral("auto"));
    KVApplication::SetGpuUse(QStringLiteral("off"));
    QCOMPARE(KVApplication::GetGpuUse(), QStringLiteral("off"));
    QCOMPARE(QSettings().value(QStringLiteral("gpu/use")).toString(), QStringLiteral("off"));
}

QTEST_APPLESS_MAIN(TestKVApplication)
#include "tst_KVApplication.moc"
