#include "TestFiles.h"
#include "operations/PresetFile.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

namespace {

const operations::Adjustment& Brightness()
{
    return *operations::Catalog::Find(QStringLiteral("brightness-contrast"));
}

/// The preset of brightness 30 and contrast -20.
QByteArray Preset()
{
    return "KVBrightnessContrast 1.00000" + QByteArray::fromHex("0000001e"
                                                                "ffffffec");
}

} // namespace

class TestPresetFile : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void APresetIsReadWhicheverAdjustmentItIsOf();
    void WhatIsNoPresetIsRefused_data();
    void WhatIsNoPresetIsRefused();
    void APresetCutAnywhereIsRefused();
    void OnlyRegularFilesAreRead();
    void ALargeFileIsNotReadIntoMemory();

private:
    QString Path(const char* name) const { return m_folder->filePath(QString::fromLatin1(name)); }
    void CheckRefusal(const char* name, const QString& reason) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestPresetFile::CheckRefusal(const char* name, const QString& reason) const
{
    const operations::PresetFile::Content content = operations::PresetFile::Read(Path(name));
    QVERIFY(!content.adjustment);
    QVERIFY(!content.settings);
    QVERIFY2(content.error.startsWith(Path(name) + QStringLiteral(": ")), qPrintable(content.error));
    QVERIFY2(content.error.contains(reason), qPrintable(content.error));
}

void TestPresetFile::APresetIsReadWhicheverAdjustmentItIsOf()
{
    TestFiles::Store(Path("p"), Preset());
    const operations::PresetFile::Content content = operations::PresetFile::Read(Path("p"));
    QCOMPARE(content.error, QString());
    QCOMPARE(content.adjustment, &Brightness());
    QCOMPARE(content.settings->ToJson(),
             (QJsonObject{{QStringLiteral("brightness"), 30}, {QStringLiteral("contrast"), -20}}));
    for (const operations::Adjustment& entry : operations::Catalog::All()) {
        const auto defaults = entry.makeSettings();
        if (!defaults->HasPreset())
            continue;
        TestFiles::Store(Path("p"), defaults->ToPreset());
        const operations::PresetFile::Content read = operations::PresetFile::Read(Path("p"));
        QCOMPARE(read.adjustment, &entry);
        QCOMPARE(read.settings->ToJson(), defaults->ToJson());
    }
}

void TestPresetFile::WhatIsNoPresetIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << QByteArray() << "empty";
    QTest::newRow("a picture") << QByteArray("\x89PNG\r\n\x1a\n") << "does not begin";
    QTest::newRow("another adjustment") << QByteArray("KVNonsense 1.00000") << "\"KVNonsense 1.00000\"";
    QTest::newRow("another version") << Preset().replace("1.00000", "1.00001")
                                     << "\"KVBrightnessContrast 1.00001\"";
    QTest::newRow("more behind it") << Preset() + 'x' << "brightness-contrast is cut or damaged";
}

void TestPresetFile::WhatIsNoPresetIsRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    TestFiles::Store(Path("p"), bytes);
    CheckRefusal("p", reason);
}

void TestPresetFile::APresetCutAnywhereIsRefused()
{
    const int tagSize = Preset().indexOf('\0');
    for (int length = 0; length < Preset().size(); ++length) {
        TestFiles::Store(Path("p"), Preset().left(length));
        CheckRefusal("p", length == 0        ? QStringLiteral("empty")
                          : length < tagSize ? QStringLiteral("does not begin")
                                             : QStringLiteral("cut or damaged"));
    }
}

void TestPresetFile::OnlyRegularFilesAreRead()
{
    QCOMPARE(::mkfifo(QFile::encodeName(Path("pipe")).constData(), 0600), 0);
    CheckRefusal("pipe", QStringLiteral("not a regular file")); // at once, though nobody writes to it
    CheckRefusal(".", QStringLiteral("folder"));
    CheckRefusal("missing", QStringLiteral("No such file"));
}

void TestPresetFile::ALargeFileIsNotReadIntoMemory()
{
    TestFiles::Store(Path("p"), Preset());
    QFile file(Path("p"));
    QVERIFY(file.resize(qint64(1) << 30)); // sparse
    CheckRefusal("p", QStringLiteral("larger than"));
}

QTEST_MAIN(TestPresetFile)
#include "tst_PresetFile.moc"
