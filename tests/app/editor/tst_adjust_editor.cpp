#include "TestPictures.h"
#include "YDAdjustmentWidget.h"
#include "catalog/AdjustmentCatalog.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

/// The program, driven from its command line.
class TestAdjustEditor : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void RenderingWritesWhatThePanelApplies();
    void RenderingShowsTheDialogInTheWindow();
    void RenderingLeavesTheUsersSettingsAlone();
    void WhatCannotBeDrawnEndsTheRendering();
    void AWrongCallSaysWhy_data();
    void AWrongCallSaysWhy();
    void WhatFailsIsNamed_data();
    void WhatFailsIsNamed();
    void NothingIsAppliedWhenTheWindowCannotBeWritten();

private:
    struct Answer
    {
        int status = -1;
        QString error;
    };

    QString Path(const char* name) const { return m_folder->filePath(QString::fromUtf8(name)); }
    Answer Run(const QStringList& arguments) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestAdjustEditor::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(ImageToQImage(TestPictures::Noise(300, 200)).save(Path("in.png")));
}

TestAdjustEditor::Answer TestAdjustEditor::Run(const QStringList& arguments) const
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), Path("config"));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_folder->path());
    process.start(QStringLiteral(EDITOR_PROGRAM), arguments);
    if (!process.waitForFinished(120000))
        return {};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromLocal8Bit(process.readAllStandardError())};
}

void TestAdjustEditor::RenderingWritesWhatThePanelApplies()
{
    const Answer answer = Run({"--render", "in.png", "--adjustment", "brightness-contrast", "--set",
                               "brightness=20", "--set", "contrast=30", "--output", "out.png"});
    QVERIFY2(answer.status == 0, qPrintable(answer.error));

    const AdjustmentEntry& entry = *AdjustmentCatalog::Find(QStringLiteral("brightness-contrast"));
    const auto settings = entry.makeSettings();
    QVERIFY(settings->SetFromText(QStringLiteral("brightness=20")).isEmpty());
    QVERIFY(settings->SetFromText(QStringLiteral("contrast=30")).isEmpty());
    const RGBA32iImage expected = settings->MakeTask().ApplyToCopy(TestPictures::Noise(300, 200)).picture;
    QVERIFY(TestPictures::AreEqual(ImageFromQImage(QImage(Path("out.png"))), expected));
}

void TestAdjustEditor::RenderingShowsTheDialogInTheWindow()
{
    const QStringList call{"--render", "in.png", "--adjustment", "brightness-contrast", "--window"};
    QVERIFY(Run(QStringList{"--palette", "dark"} + call + QStringList{"dark.png"}).status == 0);
    QVERIFY(Run(QStringList{"--palette", "light"} + call + QStringList{"light.png"}).status == 0);
    const QImage dark(Path("dark.png"));
    const QImage light(Path("light.png"));
    QVERIFY(dark.width() > 800 && dark.height() > 500);
    QCOMPARE(dark.size(), light.size());
    QVERIFY(qGray(dark.pixel(3, 3)) < 100);
    QVERIFY(qGray(light.pixel(3, 3)) > 200);
}

void TestAdjustEditor::RenderingLeavesTheUsersSettingsAlone()
{
    QCOMPARE(Run({"--render", "in.png", "--adjustment", "brightness-contrast"}).status, 0);
    QVERIFY(!QFile::exists(Path("config/adjustmentgui/adjust-editor.conf")));
}

void TestAdjustEditor::WhatCannotBeDrawnEndsTheRendering()
{
    const Answer answer = Run({"--render", "in.png", "--adjustment", "sign", "--set", "fileName=missing.png",
                               "--output", "out.png"});
    QCOMPARE(answer.status, 1);
    QVERIFY2(answer.error.contains(QStringLiteral("missing.png: ")), qPrintable(answer.error));
    QVERIFY(!QFile::exists(Path("out.png")));
}

void TestAdjustEditor::AWrongCallSaysWhy_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");
    QTest::newRow("unknown adjustment")
        << QStringList{"--render", "in.png", "--adjustment", "nope"} << QStringLiteral("nope");
    QTest::newRow("no picture") << QStringList{"--render", "--adjustment", "brightness-contrast"}
                                << QStringLiteral("one picture");
    QTest::newRow("value out of range")
        << QStringList{"--render", "in.png",         "--adjustment", "brightness-contrast",
                       "--set",    "brightness=1000"}
        << QStringLiteral("brightness");
    QTest::newRow("unknown palette") << QStringList{"--palette", "pink"} << QStringLiteral("pink");
}

void TestAdjustEditor::AWrongCallSaysWhy()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    const Answer answer = Run(arguments);
    QCOMPARE(answer.status, 2);
    QVERIFY2(answer.error.contains(reason), qPrintable(answer.error));
}

void TestAdjustEditor::WhatFailsIsNamed_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("name");
    QTest::newRow("no such picture") << "/nowhere/a.png"
                                     << "out.png"
                                     << "/nowhere/a.png";
    QTest::newRow("output that cannot be written") << "in.png"
                                                   << "/nowhere/out.png"
                                                   << "/nowhere/out.png";
}

void TestAdjustEditor::WhatFailsIsNamed()
{
    QFETCH(QString, input);
    QFETCH(QString, output);
    QFETCH(QString, name);
    const Answer answer = Run({"--render", input, "--adjustment", "brightness-contrast", "--output", output});
    QCOMPARE(answer.status, 1);
    QVERIFY2(answer.error.contains(name), qPrintable(answer.error));
}

void TestAdjustEditor::NothingIsAppliedWhenTheWindowCannotBeWritten()
{
    const Answer answer = Run({"--render", "in.png", "--adjustment", "brightness-contrast", "--window",
                               "/nowhere/window.png", "--output", "out.png"});
    QCOMPARE(answer.status, 1);
    QVERIFY2(answer.error.contains(QStringLiteral("/nowhere/window.png")), qPrintable(answer.error));
    QVERIFY(!QFile::exists(Path("out.png")));
}

QTEST_MAIN(TestAdjustEditor)
#include "tst_adjust_editor.moc"
