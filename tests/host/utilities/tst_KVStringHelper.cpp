#include "utilities/KVPixelRatioRound.h"
#include "utilities/KVStringHelper.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTest>

/// Run on screens with one and with two device pixels to the unit.
class TestKVStringHelper : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void NamesTheVariantOfTheScreen_data();
    void NamesTheVariantOfTheScreen();
    void ScenesOfTheDocumentViewAreInPicturePixels();

private:
    QTemporaryDir m_folder;
};

void TestKVStringHelper::initTestCase()
{
    QVERIFY(m_folder.isValid());
    for (const char* name :
         {"both.png", "both@2x.png", "plain.png", "bare", "bare@2x", "a.b.c", "a.b@2x.c"}) {
        QFile file(m_folder.filePath(QString::fromLatin1(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QDir::setSearchPaths(QStringLiteral("named"), {m_folder.path()});
}

void TestKVStringHelper::NamesTheVariantOfTheScreen_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("variant"); // on a screen with two device pixels to the unit
    QTest::newRow("with a variant") << "both.png"
                                    << "both@2x.png";
    QTest::newRow("without") << "plain.png"
                             << "plain.png";
    QTest::newRow("without a suffix") << "bare"
                                      << "bare@2x";
    QTest::newRow("with two suffixes") << "a.b.c"
                                       << "a.b@2x.c";
    QTest::newRow("that is a variant") << "both@2x.png"
                                       << "both@2x.png";
    QTest::newRow("that is not there") << "none.png"
                                       << "none.png";
    QTest::newRow("empty") << ""
                           << "";
}

void TestKVStringHelper::NamesTheVariantOfTheScreen()
{
    QFETCH(QString, name);
    QFETCH(QString, variant);
    const bool isFine = qGuiApp->devicePixelRatio() > 1.0;
    const QString expected = isFine ? variant : name;
    for (const QString& folder : {QStringLiteral("named:"), m_folder.path() + QLatin1Char('/')})
        if (!name.isEmpty())
            QCOMPARE(KVStringHelper::DPIAdjustImageName(folder + name), folder + expected);
        else
            QCOMPARE(KVStringHelper::DPIAdjustImageName(name), expected);
}

void TestKVStringHelper::ScenesOfTheDocumentViewAreInPicturePixels()
{
    QCOMPARE(KVPixelRatioRound::GetPixelRatio(), 1.0);
}

QTEST_MAIN(TestKVStringHelper)
#include "tst_KVStringHelper.moc"
