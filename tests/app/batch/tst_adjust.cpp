#include "TestFiles.h"
#include "TestPictures.h"
#include "core/KVImageFileManager.h"
#include "operations/MaskOfShape.h"
#include "operations/Recipe.h"

#include <QColorSpace>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using TestFiles::BytesOf;
using TestFiles::Store;

namespace {

constexpr int PatienceMs = 120000;

struct Outcome
{
    int status = -1;
    QString out;
    QString err;
};

/// The channels grow along the picture, from 0 to 199, so that nothing is clipped by small changes.
QImage Ramp(int width = 40, int height = 30)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(20 + x, 60 + y, 20 + (x * y) % 150));
    return image;
}

QRgb Brighter(QRgb pixel, int by) { return qRgb(qRed(pixel) + by, qGreen(pixel) + by, qBlue(pixel) + by); }

QImage Brighter(QImage image, int by, const QRect& where)
{
    for (int y = where.top(); y <= where.bottom(); ++y)
        for (int x = where.left(); x <= where.right(); ++x)
            image.setPixel(x, y, Brighter(image.pixel(x, y), by));
    return image;
}

QString AsText(const QStringList& list) { return list.join(QLatin1Char(' ')); }

} // namespace

/// The batch program as its users meet it.
class TestAdjust : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void ShowsHelpAndVersion_data();
    void ShowsHelpAndVersion();
    void RefusesWrongCalls_data();
    void RefusesWrongCalls();
    void ListsTheAdjustments();
    void ListsAsJson();
    void APresetIsTheStreamAndNothingElse();
    void APresetReplacesAFileOnlyByForce();
    void ShowsAPreset();
    void SaysWhatIsWrongWithAPreset_data();
    void SaysWhatIsWrongWithAPreset();
    void ACutPresetIsRefusedAtEveryByte();
    void TakesTheValuesOfAPresetAsTheyAre();
    void AdjustsEachPixel();
    void AppliesStepsInTheirOrder();
    void AMaskLimitsTheAdjustment_data();
    void AMaskLimitsTheAdjustment();
    void AMaskBlendsByItsGrey();
    void ABlackMaskChangesNothing();
    void AnUnreadableMaskStopsEverything();
    void ARecipeGivesTheBytesOfItsSteps();
    void ARecipeKeepsItsPlaceAmongOtherSteps();
    void ADisabledStepIsSkipped();
    void AStepsOwnSelectionTakesThePlaceOfTheMask();
    void AShapeFitsEachPicture();
    void AMaskLiesBesideItsRecipe();
    void SaysWhatIsWrongWithARecipe_data();
    void SaysWhatIsWrongWithARecipe();
    void WritesManyPicturesIntoAFolder_data();
    void WritesManyPicturesIntoAFolder();
    void OneFailureLeavesTheOthersDone();
    void ReplacesAFileOnlyByForce();
    void WritesAPictureOverItself();
    void TwoInputsOfOneNameAreAWrongCall();
    void AFolderTakesASinglePictureAsWell();
    void KeepsTheFormatOfANameWithoutOne();
    void MetadataSurvive();
    void TellsReducedDepth();
    void TellsOfFurtherPages();
    void ReadsFurtherKindsAndSizesWhenTold();
    void KindsAndSizesConcernTheMaskToo();
    void PresetsOfTheFillsAreTheirStreams_data();
    void PresetsOfTheFillsAreTheirStreams();
    void FillsWhatIsSelected();
    void ReplacesTheColourInACornerWhateverIsSelected();
    void ComputesThePreviewsOfManyPictures_data();
    void ComputesThePreviewsOfManyPictures();
    void DrawsOnManyPictures_data();
    void DrawsOnManyPictures();
    void AnOverlayKeepsToTheMask();
    void AStampThatCannotBeReadFailsEachPicture_data();
    void AStampThatCannotBeReadFailsEachPicture();
    void AStampWithoutAFileIsToldOf();
    void NeedsNoDisplay();
    void FullStandardOutputIsAFailure();
    void NamesBeyondAsciiWork();
    void AnInterruptLeavesWholeFilesOnly_data();
    void AnInterruptLeavesWholeFilesOnly();
    void SelectiveColorsTravelAsAPreset();
    void SelectiveColorsAreAppliedInTheSelection();
    void EveryAdjustmentGivesTheBytesOfItsTask_data();
    void EveryAdjustmentGivesTheBytesOfItsTask();
    void NoValueIsRoundedToWhatAControlCanShow_data();
    void NoValueIsRoundedToWhatAControlCanShow();

private:
    QString Path(const QString& name) const { return m_folder->filePath(name); }
    void StorePicture(const QString& name, const QImage& image, const KVImageMetadata& metadata = {});
    QImage Picture(const QString& name) const { return KVImageFileManager::Read(Path(name)).image; }
    QStringList Files(const QString& folder = {}) const
    {
        return QDir(Path(folder)).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }
    Outcome Run(const QStringList& arguments, const QProcessEnvironment& environment = Environment()) const;
    static QProcessEnvironment Environment()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("QT_QPA_PLATFORM")); // the program finds its own
        environment.remove(QStringLiteral("DISPLAY"));
        return environment;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestAdjust::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestAdjust::StorePicture(const QString& name, const QImage& image, const KVImageMetadata& metadata)
{
    KVImageFileManager::WriteOptions options;
    options.overwrite = true;
    QCOMPARE(KVImageFileManager::Write(Path(name), image, metadata, options).error, QString());
}

/// Names in the arguments are relative to the test's folder.
Outcome TestAdjust::Run(const QStringList& arguments, const QProcessEnvironment& environment) const
{
    QProcess process;
    process.setWorkingDirectory(m_folder->path());
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(ADJUST_PROGRAM), arguments);
    if (!process.waitForFinished(PatienceMs) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), QString::fromLocal8Bit(process.readAllStandardOutput()),
            QString::fromLocal8Bit(process.readAllStandardError())};
}

void TestAdjust::ShowsHelpAndVersion_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");
    QTest::newRow("long") << QStringList{"--help"} << "adjust apply";
    QTest::newRow("short") << QStringList{"-h"} << "adjust preset NAME";
    QTest::newRow("version") << QStringList{"--version"} << "adjust " ADJUST_VERSION "\n";
    for (const char* command : {"list", "preset", "show", "apply"})
        QTest::newRow(command) << QStringList{command, "--help"} << "Usage: adjust " + QString(command);
}

void TestAdjust::ShowsHelpAndVersion()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, expected);
    const Outcome outcome = Run(arguments);
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.err, QString());
    QVERIFY2(outcome.out.contains(expected), qPrintable(outcome.out));
}

void TestAdjust::RefusesWrongCalls_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");
    const auto row = [](const QStringList& arguments, const char* expected) {
        QTest::newRow(qPrintable(AsText(arguments))) << arguments << expected;
    };
    const QString step = QStringLiteral("brightness-contrast brightness=10");
    row({}, "a command is expected");
    row({"nonsense"}, "no command \"nonsense\"");
    row({"list", "more"}, "more");
    row({"list", "--nonsense"}, "nonsense");
    row({"preset"}, "name of an adjustment is missing");
    row({"preset", "brightness-contrast"}, "behind -o");
    row({"preset", "brightness-contrast", "-o"}, "Missing value");
    row({"preset", "brightness-contrast", "-o", "new", "-o", "newer"}, "behind -o");
    row({"preset", "exposure", "exposure=1", "-o", "new"}, "exposure has no stored form");
    row({"preset", "exposure", "exposure=21", "-o", "new"}, "exposure: 21 is outside -20..20");
    row({"preset", "nonsense", "-o", "new"}, "no adjustment \"nonsense\"");
    row({"preset", "brightness-contrast", "nonsense=1", "-o", "new"}, "\"nonsense\"");
    row({"preset", "brightness-contrast", "brightness", "-o", "new"}, "FIELD=VALUE");
    row({"preset", "brightness-contrast", "brightness=", "-o", "new"}, "brightness");
    row({"preset", "brightness-contrast", "brightness=1x", "-o", "new"}, "1x");
    row({"preset", "brightness-contrast", "brightness=1.5", "-o", "new"}, "whole number");
    row({"preset", "brightness-contrast", "brightness=true", "-o", "new"}, "true");
    row({"preset", "brightness-contrast", "brightness=101", "-o", "new"}, "-100..100");
    row({"preset", "brightness-contrast", "brightness=1e99", "-o", "new"}, "-100..100");
    row({"preset", "brightness-contrast", "brightness=nan", "-o", "new"}, "nan");
    row({"preset", "replace-color", "tolerance=256", "-o", "new"}, "256 is outside 0..255");
    row({"preset", "replace-color", "position=4", "-o", "new"}, "4 is outside 0..3");
    row({"preset", "replace-color", "opacity=-1", "-o", "new"}, "-1 is outside 0..100");
    row({"preset", "replace-color", "color=red", "-o", "new"}, "#rrggbb");
    row({"preset", "fill-color", "opacity=101", "-o", "new"}, "101 is outside 0..100");
    row({"show"}, "one file");
    row({"show", "a", "b"}, "one file");
    row({"apply", "-a", step, "-o", "new.png"}, "no picture");
    row({"apply", "-a", step, "in.png"}, "behind -o");
    row({"apply", "in.png", "-o", "new.png"}, "no adjustment");
    row({"apply", "-r", "missing", "-a", "nonsense", "in.png", "-o", "new.png"}, "nonsense");
    row({"apply", "-a", "", "in.png", "-o", "new.png"}, "behind -a");
    row({"apply", "-a", "nonsense", "in.png", "-o", "new.png"}, "nonsense");
    row({"apply", "-a", "brightness-contrast 'open", "in.png", "-o", "new.png"}, "left open");
    row({"apply", "-a", "brightness-contrast brightness=[1", "in.png", "-o", "new.png"}, "left open");
    row({"apply", "-a", step, "in.png", "-o", "new.xyz"}, "new.xyz");
    row({"apply", "-a", step, "in.png", "in2.png", "-o", "in.png"}, "folder");
    row({"apply", "-a", step, "-j", "0", "in.png", "-o", "new.png"}, "from 1 to");
    row({"apply", "-a", step, "-j", "many", "in.png", "-o", "new.png"}, "many");
    row({"apply", "-a", step, "--offset", "1,2", "in.png", "-o", "new.png"}, "mask");
    row({"apply", "-a", step, "-s", "in.png", "--offset", "1", "in.png", "-o", "new.png"}, "X,Y");
    row({"apply", "-a", step, "-s", "in.png", "--offset", "1,99999999999", "in.png", "-o", "new.png"}, "X,Y");
    row({"apply", "-a", step, "-s", "in.png", "-s", "in.png", "in.png", "-o", "new.png"}, "one mask");
    row({"apply", "-a", step, "--max-megapixels", "0", "in.png", "-o", "new.png"}, "from 1 to");
}

void TestAdjust::RefusesWrongCalls()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, expected);
    StorePicture(QStringLiteral("in.png"), Ramp());
    StorePicture(QStringLiteral("in2.png"), Ramp());
    const Outcome outcome = Run(arguments);
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.out, QString());
    QVERIFY2(outcome.err.startsWith(QStringLiteral("adjust: ")) && outcome.err.contains(expected),
             qPrintable(outcome.err));
    QCOMPARE(Files(), (QStringList{"in.png", "in2.png"}));
}

void TestAdjust::ListsTheAdjustments()
{
    const Outcome outcome = Run({"list"});
    QCOMPARE(outcome.status, 0);
    QVERIFY(outcome.out.contains(QStringLiteral("brightness-contrast  Brightness and Contrast\n"
                                                "    brightness=0  (whole number -100..100)\n"
                                                "    contrast=0  (whole number -100..100)\n")));
}

void TestAdjust::ListsAsJson()
{
    const Outcome outcome = Run({"list", "--json"});
    QCOMPARE(outcome.status, 0);
    const QJsonArray adjustments = QJsonDocument::fromJson(outcome.out.toUtf8()).array();
    QVERIFY(!adjustments.isEmpty());
    const QJsonObject first = adjustments.first().toObject();
    QCOMPARE(first.value("name").toString(), QStringLiteral("brightness-contrast"));
    QCOMPARE(first.value("preset").toBool(), true);
    const QJsonArray fields = first.value("fields").toArray();
    QCOMPARE(fields.size(), 2);
    const QJsonObject contrast = fields.at(1).toObject();
    QCOMPARE(contrast.value("name").toString(), QStringLiteral("contrast"));
    QCOMPARE(contrast.value("default").toInt(-1), 0);
    QCOMPARE(contrast.value("minimum").toInt(), -100);
    QCOMPARE(contrast.value("maximum").toInt(), 100);
}

void TestAdjust::APresetIsTheStreamAndNothingElse()
{
    QCOMPARE(Run({"preset", "brightness-contrast", "brightness=30", "contrast=-20", "-o", "p"}).status, 0);
    QCOMPARE(BytesOf(Path("p")), QByteArray("KVBrightnessContrast 1.00000\0\0\0\x1e\xff\xff\xff\xec", 36));
    QCOMPARE(Run({"preset", "brightness-contrast", "-o", "defaults"}).status, 0);
    QCOMPARE(BytesOf(Path("defaults")), QByteArray("KVBrightnessContrast 1.00000\0\0\0\0\0\0\0\0", 36));
    QCOMPARE(Files(), (QStringList{"defaults", "p"}));
}

void TestAdjust::APresetReplacesAFileOnlyByForce()
{
    Store(Path("p"), "old");
    const Outcome refused = Run({"preset", "brightness-contrast", "-o", "p"});
    QCOMPARE(refused.status, 1);
    QVERIFY2(refused.err.contains(QStringLiteral("p: the file exists already")), qPrintable(refused.err));
    QCOMPARE(BytesOf(Path("p")), QByteArray("old"));
    QCOMPARE(Run({"preset", "brightness-contrast", "--force", "-o", "p"}).status, 0);
    QCOMPARE(BytesOf(Path("p")).size(), 36);
    QCOMPARE(Run({"preset", "brightness-contrast", "-o", "missing/p"}).status, 1);
}

void TestAdjust::ShowsAPreset()
{
    QCOMPARE(Run({"preset", "brightness-contrast", "brightness=30", "contrast=-20", "-o", "p"}).status, 0);
    const Outcome text = Run({"show", "p"});
    QCOMPARE(text.status, 0);
    QCOMPARE(text.out, QStringLiteral("brightness-contrast\nbrightness=30\ncontrast=-20\n"));
    const Outcome json = Run({"show", "--json", "p"});
    QCOMPARE(json.status, 0);
    const QJsonObject object = QJsonDocument::fromJson(json.out.toUtf8()).object();
    QCOMPARE(object.value("adjustment").toString(), QStringLiteral("brightness-contrast"));
    QCOMPARE(object.value("fields").toObject(), (QJsonObject{{"brightness", 30}, {"contrast", -20}}));
}

void TestAdjust::SaysWhatIsWrongWithAPreset_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    const QByteArray fields("\0\0\0\x1e\xff\xff\xff\xec", 8);
    QTest::newRow("empty") << QByteArray() << "empty";
    QTest::newRow("a picture") << QByteArray("\x89PNG\r\n\x1a\n") << "does not begin";
    QTest::newRow("cut in the mark") << QByteArray("KVBright") << "does not begin";
    QTest::newRow("another adjustment") << "KVNonsense 1.00000" + fields << "KVNonsense 1.00000";
    QTest::newRow("another version") << "KVBrightnessContrast 1.00001" + fields
                                     << "KVBrightnessContrast 1.00001";
    QTest::newRow("no fields") << QByteArray("KVBrightnessContrast 1.00000") << "cut or damaged";
    QTest::newRow("more behind it") << "KVBrightnessContrast 1.00000" + fields + "x"
                                    << "cut or damaged";
}

void TestAdjust::SaysWhatIsWrongWithAPreset()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);
    Store(Path("p"), bytes);
    StorePicture("in.png", Ramp());
    for (const QStringList& call :
         {QStringList{"show", "p"}, QStringList{"apply", "-p", "p", "in.png", "-o", "out.png"}}) {
        const Outcome outcome = Run(call);
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.out, QString());
        QVERIFY2(outcome.err.startsWith(QStringLiteral("adjust: p: ")) && outcome.err.contains(expected),
                 qPrintable(outcome.err));
    }
    QVERIFY(!QFile::exists(Path("out.png")));
}

void TestAdjust::ACutPresetIsRefusedAtEveryByte()
{
    QCOMPARE(Run({"preset", "brightness-contrast", "brightness=30", "-o", "p"}).status, 0);
    const QByteArray whole = BytesOf(Path("p"));
    for (int length = 0; length < whole.size(); ++length) {
        Store(Path("p"), whole.left(length));
        const Outcome outcome = Run({"show", "p"});
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.err.startsWith(QStringLiteral("adjust: p: ")));
    }
    for (const char* name : {"missing", "."})
        QCOMPARE(Run({"show", name}).status, 1);
    QCOMPARE(::mkfifo(QFile::encodeName(Path("pipe")).constData(), 0600), 0);
    QCOMPARE(Run({"show", "pipe"}).status, 1);
}

void TestAdjust::TakesTheValuesOfAPresetAsTheyAre()
{
    Store(Path("p"),
          QByteArray("KVBrightnessContrast 1.00000\0\0\0\x78\x80\0\0\0", 36)); // 120, the least int
    QCOMPARE(Run({"show", "p"}).out,
             QStringLiteral("brightness-contrast\nbrightness=120\ncontrast=-2147483648\n"));
    StorePicture("in.png", Ramp());
    QCOMPARE(Run({"apply", "-p", "p", "in.png", "-o", "out.png"}).status, 0);
    QVERIFY(!Picture("out.png").isNull());
}

void TestAdjust::AdjustsEachPixel()
{
    StorePicture("in.png", Ramp());
    const Outcome outcome =
        Run({"apply", "-a", "brightness-contrast brightness=30", "in.png", "-o", "out.png"});
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.err, QString());
    QCOMPARE(Picture("out.png"), Brighter(Ramp(), 30, Ramp().rect()));
    QCOMPARE(Picture("in.png"), Ramp());
    QCOMPARE(Files(), (QStringList{"in.png", "out.png"}));
}

void TestAdjust::AppliesStepsInTheirOrder()
{
    // Up by 100 clips at 255 and down by 100 leaves 155; the other way round, 200 comes back.
    QImage bright(5, 5, QImage::Format_RGB32);
    bright.fill(qRgb(200, 200, 200));
    StorePicture("in.png", bright);
    QCOMPARE(Run({"preset", "brightness-contrast", "brightness=-100", "-o", "down"}).status, 0);
    const QString up = QStringLiteral("brightness-contrast brightness=100");
    QCOMPARE(Run({"apply", "-a", up, "-p", "down", "in.png", "-o", "a.png"}).status, 0);
    QCOMPARE(Picture("a.png").pixel(2, 2), qRgb(155, 155, 155));
    QCOMPARE(Run({"apply", "--preset", "down", "--adjust", up, "in.png", "-o", "b.png"}).status, 0);
    QCOMPARE(Picture("b.png").pixel(2, 2), qRgb(200, 200, 200));
    QCOMPARE(Run({"apply", "-a", up, "-p", "down", "-a", up, "in.png", "-o", "c.png"}).status, 0);
    QCOMPARE(Picture("c.png").pixel(2, 2), qRgb(255, 255, 255));
}

void TestAdjust::AMaskLimitsTheAdjustment_data()
{
    QTest::addColumn<QString>("offset");
    QTest::addColumn<QRect>("adjusted");
    // The mask is 20 x 16; white from (5, 4) on, 10 x 8. The picture is 40 x 30.
    QTest::newRow("at the corner") << "" << QRect(5, 4, 10, 8);
    QTest::newRow("further in") << "12,9" << QRect(17, 13, 10, 8);
    QTest::newRow("beyond the left and upper edge") << "-8,-6" << QRect(0, 0, 7, 6);
    QTest::newRow("only the empty rim is outside") << "-5,-4" << QRect(0, 0, 10, 8);
    QTest::newRow("beyond the right and lower edge") << "32,23" << QRect(37, 27, 3, 3);
    QTest::newRow("outside on the left") << "-15,0" << QRect();
    QTest::newRow("far outside") << "1000000,-1000000" << QRect();
}

void TestAdjust::AMaskLimitsTheAdjustment()
{
    QFETCH(QString, offset);
    QFETCH(QRect, adjusted);
    StorePicture("in.png", Ramp());
    QImage mask(20, 16, QImage::Format_RGB32);
    mask.fill(Qt::black);
    for (int y = 4; y < 12; ++y)
        for (int x = 5; x < 15; ++x)
            mask.setPixel(x, y, qRgb(255, 255, 255));
    StorePicture("mask.png", mask);
    QStringList call{"apply", "-a", "brightness-contrast brightness=30", "-s", "mask.png"};
    if (!offset.isEmpty())
        call << "--offset" << offset;
    const Outcome outcome = Run(call + QStringList{"in.png", "-o", "out.png"});
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(Picture("out.png"), Brighter(Ramp(), 30, adjusted));
}

void TestAdjust::AMaskBlendsByItsGrey()
{
    StorePicture("in.png", Ramp());
    QImage mask = Ramp().convertToFormat(QImage::Format_ARGB32);
    mask.fill(qRgb(51, 51, 51)); // a fifth
    mask.setPixel(0, 0, qRgba(255, 255, 255, 0));
    mask.setPixel(1, 0, qRgba(255, 255, 255, 51));
    StorePicture("mask.png", mask);
    QCOMPARE(
        Run({"apply", "-a", "brightness-contrast brightness=50", "-s", "mask.png", "in.png", "-o", "out.png"})
            .status,
        0);
    QImage expected = Brighter(Ramp(), 10, Ramp().rect());
    expected.setPixel(0, 0, Ramp().pixel(0, 0)); // transparent parts cover nothing
    QCOMPARE(Picture("out.png"), expected);
}

void TestAdjust::ABlackMaskChangesNothing()
{
    StorePicture("in.png", Ramp());
    QImage mask(20, 16, QImage::Format_RGB32);
    mask.fill(Qt::black);
    StorePicture("mask.png", mask);
    QCOMPARE(
        Run({"apply", "-a", "brightness-contrast brightness=30", "-s", "mask.png", "in.png", "-o", "out.png"})
            .status,
        0);
    QCOMPARE(Picture("out.png"), Ramp());
}

void TestAdjust::AnUnreadableMaskStopsEverything()
{
    StorePicture("in.png", Ramp());
    const Outcome outcome =
        Run({"apply", "-a", "brightness-contrast", "-s", "mask.png", "in.png", "-o", "out.png"});
    QCOMPARE(outcome.status, 1);
    QVERIFY(outcome.err.startsWith(QStringLiteral("adjust: mask.png: ")));
    QCOMPARE(Files(), QStringList("in.png"));
}

void TestAdjust::ARecipeGivesTheBytesOfItsSteps()
{
    const QImage source = ImageToQImage(TestPictures::Noise(120, 90));
    StorePicture("in.png", source);
    QImage mask(50, 40, QImage::Format_RGB32);
    mask.fill(qRgb(150, 150, 150));
    StorePicture("mask.png", mask);
    QStringList call{"apply", "-s", "mask.png", "--offset", "20,-5"};
    operations::Recipe recipe;
    for (const operations::Adjustment& adjustment : operations::Catalog::All()) {
        call << "-a" << adjustment.name + (adjustment.name == "levels" ? " gamma=[1.2,1,1,0.333]" : "");
        auto settings = adjustment.makeSettings();
        if (adjustment.name == "levels")
            QCOMPARE(settings->SetFromText("gamma=[1.2,1,1,0.333]"), QString());
        recipe.steps.emplace_back(adjustment, std::move(settings));
    }
    QCOMPARE(Run(call + QStringList{"in.png", "-o", "a.png"}).status, 0);
    QVERIFY(Picture("a.png") != Picture("in.png"));
    QCOMPARE(recipe.Write(Path("all.json"), operations::Recipe::Existing::Refuse), QString());
    for (const char* const option : {"-r", "--recipe"}) {
        const Outcome outcome = Run({"apply", option, "all.json", "-s", "mask.png", "--offset", "20,-5",
                                     "--force", "in.png", "-o", "r.png"});
        QCOMPARE(outcome.status, 0);
        QCOMPARE(BytesOf(Path("r.png")), BytesOf(Path("a.png")));
    }
}

void TestAdjust::ARecipeKeepsItsPlaceAmongOtherSteps()
{
    // Up by 100 clips at 255, and down by 100 at 0.
    QImage bright(5, 5, QImage::Format_RGB32);
    bright.fill(qRgb(200, 200, 200));
    StorePicture("in.png", bright);
    QCOMPARE(Run({"preset", "brightness-contrast", "brightness=-100", "-o", "down"}).status, 0);
    Store(Path("up"), R"({"adjustmentgui": 1, "steps": [
        {"adjustment": "brightness-contrast", "settings": {"brightness": 100}}]})");
    const QString down = QStringLiteral("brightness-contrast brightness=-100");
    QCOMPARE(Run({"apply", "-r", "up", "-p", "down", "in.png", "-o", "a.png"}).status, 0);
    QCOMPARE(Picture("a.png").pixel(2, 2), qRgb(155, 155, 155));
    QCOMPARE(Run({"apply", "-p", "down", "-r", "up", "in.png", "-o", "b.png"}).status, 0);
    QCOMPARE(Picture("b.png").pixel(2, 2), qRgb(200, 200, 200));
    QCOMPARE(Run({"apply", "-r", "up", "-a", down, "-r", "up", "in.png", "-o", "c.png"}).status, 0);
    QCOMPARE(Picture("c.png").pixel(2, 2), qRgb(255, 255, 255));
}

void TestAdjust::ADisabledStepIsSkipped()
{
    StorePicture("in.png", Ramp());
    Store(Path("r"), R"({"adjustmentgui": 1, "steps": [
        {"adjustment": "threshold", "enabled": false, "selection": {"mask": "missing.png"}},
        {"adjustment": "sign", "enabled": false},
        {"adjustment": "brightness-contrast", "settings": {"brightness": 30}}]})");
    const Outcome outcome = Run({"apply", "-r", "r", "in.png", "-o", "out.png"});
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(Picture("out.png"), Brighter(Ramp(), 30, Ramp().rect()));
    Store(Path("none"), R"({"adjustmentgui": 1, "steps": []})");
    QCOMPARE(Run({"apply", "-r", "none", "in.png", "-o", "same.png"}).status, 0);
    QCOMPARE(Picture("same.png"), Ramp());
}

void TestAdjust::AStepsOwnSelectionTakesThePlaceOfTheMask()
{
    StorePicture("in.png", Ramp());
    QImage mask(4, 3, QImage::Format_RGB32);
    mask.fill(Qt::white);
    StorePicture("mask.png", mask);
    Store(Path("r"), R"({"adjustmentgui": 1, "steps": [
        {"adjustment": "brightness-contrast", "settings": {"brightness": 30},
         "selection": {"rectangle": [10, 12, 20, 17]}},
        {"adjustment": "brightness-contrast", "settings": {"brightness": 20}}]})");
    QCOMPARE(Run({"apply", "-r", "r", "-s", "mask.png", "--offset", "2,1", "in.png", "-o", "out.png"}).status,
             0);
    const QImage inRectangle = Brighter(Ramp(), 30, QRect(10, 12, 10, 5));
    QCOMPARE(Picture("out.png"), Brighter(inRectangle, 20, QRect(2, 1, 4, 3)));
    QCOMPARE(Run({"apply", "-r", "r", "in.png", "-o", "whole.png"}).status, 0);
    QCOMPARE(Picture("whole.png"), Brighter(inRectangle, 20, Ramp().rect()));
}

void TestAdjust::AShapeFitsEachPicture()
{
    QVERIFY(QDir(m_folder->path()).mkdir("out"));
    Store(Path("r"), R"({"adjustmentgui": 1, "steps": [
        {"adjustment": "brightness-contrast", "settings": {"brightness": 30},
         "selection": {"ellipse": [-10, 3, 30, 25.5], "feather": 4}}]})");
    const QList<QSize> sizes{{40, 30}, {12, 30}, {3, 2}};
    QStringList names;
    for (const QSize& size : sizes) {
        names.append(QStringLiteral("%1.png").arg(size.width()));
        StorePicture(names.last(), Ramp(size.width(), size.height()));
    }
    QCOMPARE(Run(QStringList{"apply", "-r", "r", "-o", "out"} + names).status, 0);
    QPainterPath ellipse;
    ellipse.addEllipse(QRectF(QPointF(-10, 3), QPointF(30, 25.5)));
    const auto settings = operations::Catalog::Find("brightness-contrast")->makeSettings();
    QCOMPARE(settings->SetFromText("brightness=30"), QString());
    for (int i = 0; i < sizes.size(); ++i) {
        const RGBA32iImage source = ImageFromQImage(Ramp(sizes.at(i).width(), sizes.at(i).height()));
        const RGBA32iImage expected =
            settings->MakeTask()
                .ApplyToCopy(source, operations::MaskOfShape(ellipse, 4, sizes.at(i)))
                .picture;
        QVERIFY(TestPictures::AreEqual(ImageFromQImage(Picture("out/" + names.at(i))), expected));
    }
}

/// Two steps share the mask and put it in different places.
void TestAdjust::AMaskLiesBesideItsRecipe()
{
    StorePicture("in.png", Ramp());
    QVERIFY(QDir(m_folder->path()).mkpath("recipes/masks"));
    QImage mask(4, 3, QImage::Format_RGB32);
    mask.fill(Qt::white);
    StorePicture("recipes/masks/m.png", mask);
    Store(Path("recipes/r"), R"({"adjustmentgui": 1, "steps": [
        {"adjustment": "brightness-contrast", "settings": {"brightness": 30},
         "selection": {"mask": "masks/m.png", "offset": [5, 7]}},
        {"adjustment": "brightness-contrast", "settings": {"brightness": 20},
         "selection": {"mask": "masks/m.png", "offset": [-1, 0]}}]})");
    for (const QString& recipe : {QStringLiteral("recipes/r"), Path("recipes/r")}) {
        const Outcome outcome = Run({"apply", "-r", recipe, "--force", "in.png", "-o", "out.png"});
        QCOMPARE(outcome.err, QString());
        QCOMPARE(outcome.status, 0);
        QCOMPARE(Picture("out.png"),
                 Brighter(Brighter(Ramp(), 30, QRect(5, 7, 4, 3)), 20, QRect(0, 0, 3, 3)));
    }
    QVERIFY(QFile::remove(Path("recipes/masks/m.png")));
    const Outcome missing = Run({"apply", "-r", "recipes/r", "in.png", "-o", "new.png"});
    QCOMPARE(missing.status, 1);
    QVERIFY2(missing.err.startsWith("adjust: recipes/masks/m.png: "), qPrintable(missing.err));
    QVERIFY(!QFile::exists(Path("new.png")));
}

void TestAdjust::SaysWhatIsWrongWithARecipe_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << QByteArray("") << "the file is empty";
    QTest::newRow("a preset") << QByteArray("KVBrightnessContrast 1.00000\0\0\0\0\0\0\0\0", 36)
                              << "it is not JSON";
    QTest::newRow("another version") << QByteArray(R"({"adjustmentgui": 2, "steps": []})")
                                     << "adjustmentgui: version 2 is not known";
    QTest::newRow("outside its range")
        << QByteArray(R"({"adjustmentgui": 1, "steps": [{"adjustment": "tint"}, {"adjustment": "gamma",
                          "settings": {"gamma": 12}}]})")
        << "steps[1].settings: gamma: 12 is outside";
    QTest::newRow("a mask elsewhere") << QByteArray(R"({"adjustmentgui": 1, "steps": [{"adjustment": "tint",
                          "selection": {"mask": "../in.png"}}]})")
                                      << "steps[0].selection: mask: ";
    QTest::newRow("a disabled step is checked as well")
        << QByteArray(R"({"adjustmentgui": 1, "steps": [{"adjustment": "nonsense", "enabled": false}]})")
        << "steps[0].adjustment: there is no adjustment \"nonsense\"";
}

void TestAdjust::SaysWhatIsWrongWithARecipe()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);
    Store(Path("r"), bytes);
    StorePicture("in.png", Ramp());
    const Outcome outcome = Run({"apply", "-r", "r", "in.png", "-o", "out.png"});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.out, QString());
    QVERIFY2(outcome.err.startsWith(QStringLiteral("adjust: r: ")) && outcome.err.contains(expected),
             qPrintable(outcome.err));
    QVERIFY(!QFile::exists(Path("out.png")));
    const Outcome missing = Run({"apply", "-r", "missing", "in.png", "-o", "out.png"});
    QCOMPARE(missing.status, 1);
    QVERIFY2(missing.err.startsWith(QStringLiteral("adjust: missing: ")), qPrintable(missing.err));
}

void TestAdjust::WritesManyPicturesIntoAFolder_data()
{
    QTest::addColumn<QString>("jobs");
    QTest::newRow("one at once") << "1";
    QTest::newRow("four at once") << "4";
    QTest::newRow("more than there are") << "64";
}

void TestAdjust::WritesManyPicturesIntoAFolder()
{
    QFETCH(QString, jobs);
    QStringList call{"apply", "-a", "brightness-contrast brightness=20", "-j", jobs, "-o", "out"};
    QStringList names;
    for (int i = 0; i < 20; ++i) {
        names.append(QStringLiteral("%1.%2").arg(i, 2, 10, QLatin1Char('0')).arg(i % 2 ? "png" : "tif"));
        StorePicture(names.last(), Ramp(40 + i, 30));
    }
    const Outcome outcome = Run(call + names);
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(Files("out"), names);
    for (int i = 0; i < 20; ++i)
        QCOMPARE(Picture("out/" + names[i]), Brighter(Ramp(40 + i, 30), 20, Ramp(40 + i, 30).rect()));
}

void TestAdjust::OneFailureLeavesTheOthersDone()
{
    StorePicture("a.png", Ramp());
    StorePicture("b.png", Ramp());
    Store(Path("cut.png"), BytesOf(Path("a.png")).left(200));
    Store(Path("drawing.svg"),
          "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"99999\" height=\"99999\"/>");
    QCOMPARE(::mkfifo(QFile::encodeName(Path("pipe.png")).constData(), 0600), 0);
    QVERIFY(QDir(m_folder->path()).mkdir("out"));
    Store(Path("out/b.png"), "old");
    StorePicture("z.png", Ramp());
    const Outcome outcome = Run({"apply", "-a", "brightness-contrast brightness=20", "a.png", "missing.png",
                                 "cut.png", "drawing.svg", "pipe.png", "b.png", "z.png", "-o", "out"});
    QCOMPARE(outcome.status, 1);
    for (const char* text : {"missing.png: No such file", "cut.png: the picture is damaged",
                             "drawing.svg: pictures of the kind svg", "pipe.png: it is not a regular file",
                             "out/b.png: the file exists already"})
        QVERIFY2(outcome.err.contains(QStringLiteral("adjust: ") + text), qPrintable(outcome.err));
    QCOMPARE(outcome.err.count(QStringLiteral("adjust: ")),
             5); // the picture libraries may add lines of theirs
    QCOMPARE(Files("out"), (QStringList{"a.png", "b.png", "z.png"}));
    QCOMPARE(BytesOf(Path("out/b.png")), QByteArray("old"));
    QCOMPARE(Picture("out/z.png"), Brighter(Ramp(), 20, Ramp().rect()));
}

void TestAdjust::ReplacesAFileOnlyByForce()
{
    StorePicture("in.png", Ramp());
    Store(Path("out.png"), "old");
    const QStringList call{"apply", "-a", "brightness-contrast brightness=20", "in.png", "-o", "out.png"};
    QCOMPARE(Run(call).status, 1);
    QCOMPARE(BytesOf(Path("out.png")), QByteArray("old"));
    QCOMPARE(Run(call + QStringList("--force")).status, 0);
    QCOMPARE(Picture("out.png"), Brighter(Ramp(), 20, Ramp().rect()));
}

void TestAdjust::WritesAPictureOverItself()
{
    StorePicture("in.png", Ramp());
    const QStringList call{"apply", "-a", "brightness-contrast brightness=20", "in.png", "-o", "in.png"};
    QCOMPARE(Run(call).status, 1);
    QCOMPARE(Picture("in.png"), Ramp());
    QCOMPARE(Run(call + QStringList("--force")).status, 0);
    QCOMPARE(Picture("in.png"), Brighter(Ramp(), 20, Ramp().rect()));
    QCOMPARE(Files(), QStringList("in.png"));
}

void TestAdjust::TwoInputsOfOneNameAreAWrongCall()
{
    QVERIFY(QDir(m_folder->path()).mkdir("x"));
    QVERIFY(QDir(m_folder->path()).mkdir("y"));
    StorePicture("x/a.png", Ramp());
    StorePicture("y/a.png", Ramp());
    const Outcome outcome = Run({"apply", "-a", "brightness-contrast", "x/a.png", "y/a.png", "-o", "out"});
    QCOMPARE(outcome.status, 2);
    QVERIFY2(outcome.err.contains(QStringLiteral("x/a.png and y/a.png would both become out/a.png")),
             qPrintable(outcome.err));
    QVERIFY(!QFile::exists(Path("out")));
}

void TestAdjust::AFolderTakesASinglePictureAsWell()
{
    StorePicture("in.png", Ramp());
    QCOMPARE(Run({"apply", "-a", "brightness-contrast", "in.png", "-o", "out/"}).status, 0);
    QCOMPARE(Files("out"), QStringList("in.png"));
    StorePicture("in2.png", Ramp());
    QCOMPARE(Run({"apply", "-a", "brightness-contrast", "in2.png", "-o", "out"}).status, 0);
    QCOMPARE(Files("out"), (QStringList{"in.png", "in2.png"}));
    const Outcome outcome =
        Run({"apply", "-a", "brightness-contrast", "in.png", "in2.png", "-o", "missing/out"});
    QCOMPARE(outcome.status, 1); // a folder is made, a tree of folders is not
    QVERIFY(outcome.err.contains(QStringLiteral("missing/out")));
}

void TestAdjust::KeepsTheFormatOfANameWithoutOne()
{
    StorePicture("in.tif", Ramp());
    QVERIFY(QFile::rename(Path("in.tif"), Path("scan0001")));
    QCOMPARE(Run({"apply", "-a", "brightness-contrast", "scan0001", "-o", "out/"}).status, 0);
    const auto result = KVImageFileManager::Read(Path("out/scan0001"));
    QCOMPARE(result.format, QByteArray("tiff"));
    QCOMPARE(result.image, Ramp());
}

void TestAdjust::MetadataSurvive()
{
    KVImageMetadata metadata;
    metadata.iccProfile = QColorSpace(QColorSpace::ProPhotoRgb).iccProfile();
    metadata.texts = {{"Author", "Zoë"}};
    metadata.dotsPerMeterX = 11811;
    metadata.dotsPerMeterY = 11811;
    metadata.exif =
        QByteArray("II*\0\x08\0\0\0\x01\0\x0f\x01\x02\0\x06\0\0\0\x1a\0\0\0\0\0\0\0Brush", 32); // Make
    for (const char* name : {"a.jpg", "a.png", "a.tif", "a.webp"}) {
        StorePicture(name, Ramp(), metadata);
        const KVImageMetadata before = KVImageFileManager::Read(Path(name)).metadata;
        QVERIFY2(before.exif.contains("Brush"), name);
        QCOMPARE(Run({"apply", "-a", "brightness-contrast brightness=20", name, "-o", "out/"}).status, 0);
        const KVImageMetadata after = KVImageFileManager::Read(Path("out/") + name).metadata;
        QVERIFY2(after == before, name);
        QCOMPARE(after.iccProfile, metadata.iccProfile);
    }
}

void TestAdjust::TellsReducedDepth()
{
    QVERIFY(Ramp().convertToFormat(QImage::Format_RGBX64).save(Path("deep.png")));
    const Outcome outcome = Run({"apply", "-a", "brightness-contrast", "deep.png", "-o", "out.png"});
    QCOMPARE(outcome.status, 0);
    QVERIFY2(outcome.err.contains(QStringLiteral("deep.png: note: its depth is reduced to 8 bits")),
             qPrintable(outcome.err));
    QCOMPARE(Picture("out.png"), Ramp());
}

void TestAdjust::TellsOfFurtherPages()
{
    StorePicture("pages.tif", Ramp());
    const QStringList call{"apply", "-a", "brightness-contrast", "pages.tif", "-f", "-o", "out.png"};
    QCOMPARE(Run(call).err, QString());
    Store(Path("pages.tif"), TestFiles::WithASecondPage(BytesOf(Path("pages.tif"))));
    const Outcome outcome = Run(call);
    QCOMPARE(outcome.status, 0);
    QVERIFY2(outcome.err.contains(QStringLiteral("pages.tif: note: it holds several pictures")),
             qPrintable(outcome.err));
    QCOMPARE(Picture("out.png"), Ramp());
}

void TestAdjust::ReadsFurtherKindsAndSizesWhenTold()
{
    QVERIFY(Ramp().convertToFormat(QImage::Format_Mono).save(Path("in.xbm")));
    QStringList call{"apply", "-a", "brightness-contrast", "in.xbm", "-o", "out.png"};
    QCOMPARE(Run(call).status, 1);
    QCOMPARE(Run(call + QStringList{"--allow", "xbm"}).status, 0);
    StorePicture("large.png", QImage(1001, 1000, QImage::Format_RGB32));
    call = QStringList{"apply", "-a", "brightness-contrast", "large.png", "-o", "out2.png"};
    const Outcome outcome = Run(call + QStringList{"--max-megapixels", "1"});
    QCOMPARE(outcome.status, 1);
    QVERIFY(outcome.err.contains(QStringLiteral("1001 x 1000")));
    QCOMPARE(Run(call + QStringList{"--max-megapixels", "2"}).status, 0);
}

void TestAdjust::KindsAndSizesConcernTheMaskToo()
{
    StorePicture("in.png", Ramp());
    QVERIFY(Ramp().convertToFormat(QImage::Format_Mono).save(Path("mask.xbm")));
    QStringList call{"apply", "-a", "brightness-contrast", "in.png", "-o", "out.png", "-s", "mask.xbm"};
    Outcome outcome = Run(call);
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.err.contains(QStringLiteral("mask.xbm")), qPrintable(outcome.err));
    QCOMPARE(Run(call + QStringList{"--allow", "xbm"}).status, 0);
    StorePicture("large.png", QImage(1001, 1000, QImage::Format_RGB32));
    call = QStringList{"apply", "-a", "brightness-contrast", "in.png", "-o", "out2.png", "-s", "large.png"};
    outcome = Run(call + QStringList{"--max-megapixels", "1"});
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.err.contains(QStringLiteral("1001 x 1000")), qPrintable(outcome.err));
    QCOMPARE(Run(call + QStringList{"--max-megapixels", "2"}).status, 0);
}

void TestAdjust::PresetsOfTheFillsAreTheirStreams_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QJsonObject>("fields");
    QTest::newRow("replace-color")
        << QStringList{"tolerance=32", "position=3", "color=#ff8000", "opacity=50"}
        << "KVReplaceColor 1.00000" +
               QByteArray::fromHex("00000020 00000003 01 ffff ffff 8080 0000 0000 00000032")
        << QJsonObject{{"tolerance", 32}, {"position", 3}, {"color", "#ff8000"}, {"opacity", 50}};
    QTest::newRow("fill-color") << QStringList{"color=#40ff8000", "opacity=7"}
                                << "KVFillColor 1.00000" +
                                       QByteArray::fromHex("01 4040 ffff 8080 0000 0000 00000007")
                                << QJsonObject{{"color", "#40ff8000"}, {"opacity", 7}};
}

void TestAdjust::PresetsOfTheFillsAreTheirStreams()
{
    QFETCH(QStringList, settings);
    QFETCH(QByteArray, bytes);
    QFETCH(QJsonObject, fields);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const Outcome outcome = Run(QStringList{"preset", name} + settings + QStringList{"-o", "p"});
    QCOMPARE(outcome.err, QString());
    QCOMPARE(BytesOf(Path("p")), bytes);
    const QJsonObject shown = QJsonDocument::fromJson(Run({"show", "--json", "p"}).out.toUtf8()).object();
    QCOMPARE(shown.value("adjustment").toString(), name);
    QCOMPARE(shown.value("fields").toObject(), fields);
}

void TestAdjust::FillsWhatIsSelected()
{
    StorePicture("in.png", Ramp());
    QImage mask(10, 8, QImage::Format_RGB32);
    mask.fill(Qt::white);
    StorePicture("mask.png", mask);
    QCOMPARE(Run({"preset", "fill-color", "color=#ff8000", "-o", "p"}).status, 0);
    const Outcome outcome =
        Run({"apply", "-p", "p", "-s", "mask.png", "--offset", "35,4", "in.png", "-o", "out.png"});
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.status, 0);
    QImage expected = Ramp();
    for (int y = 4; y < 12; ++y)
        for (int x = 35; x < 40; ++x)
            expected.setPixel(x, y, qRgb(255, 128, 0));
    QCOMPARE(Picture("out.png"), expected);
}

void TestAdjust::ReplacesTheColourInACornerWhateverIsSelected()
{
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(qRgb(10, 20, 30));
    for (int y = 0; y < 30; ++y)
        picture.setPixel(17, y, qRgb(200, 200, 200)); // a wall between two areas
    StorePicture("in.png", picture);
    QImage mask(40, 30, QImage::Format_RGB32);
    mask.fill(Qt::black);
    StorePicture("mask.png", mask);
    const Outcome outcome = Run({"apply", "-a", "replace-color position=3 tolerance=5 color=#ff8000", "-s",
                                 "mask.png", "in.png", "-o", "out.png"});
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.status, 0);
    for (int y = 0; y < 30; ++y)
        for (int x = 18; x < 40; ++x)
            picture.setPixel(x, y, qRgb(255, 128, 0));
    QCOMPARE(Picture("out.png"), picture);
}

void TestAdjust::ComputesThePreviewsOfManyPictures_data() { WritesManyPicturesIntoAFolder_data(); }

/// Each of these adjustments waits in an event loop, in which other pictures come in.
void TestAdjust::ComputesThePreviewsOfManyPictures()
{
    QFETCH(QString, jobs);
    QStringList call{"apply",
                     "-a",
                     "fill-color color=#000000 opacity=0",
                     "-a",
                     "brightness-contrast brightness=20",
                     "-a",
                     "replace-color color=#ff8000",
                     "-j",
                     jobs,
                     "-o",
                     "out"};
    QStringList names;
    for (int i = 0; i < 20; ++i) {
        names.append(QStringLiteral("%1.png").arg(i, 2, 10, QLatin1Char('0')));
        StorePicture(names.last(), Ramp(40 + i, 30));
    }
    const Outcome outcome = Run(call + names);
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(Files("out"), names);
    for (int i = 0; i < 20; ++i) {
        QImage expected = Brighter(Ramp(40 + i, 30), 20, Ramp(40 + i, 30).rect());
        expected.setPixel(0, 0, qRgb(255, 128, 0)); // no neighbour is of its colour
        QCOMPARE(Picture("out/" + names[i]), expected);
    }
}

void TestAdjust::DrawsOnManyPictures_data() { WritesManyPicturesIntoAFolder_data(); }

/// What is drawn, what is converted, and what is drawn on that.
void TestAdjust::DrawsOnManyPictures()
{
    QFETCH(QString, jobs);
    QImage stamp(6, 5, QImage::Format_RGB32);
    stamp.fill(qRgb(10, 20, 30));
    StorePicture("stamp.png", stamp);
    QStringList call{"apply", "-j", jobs, "-o", "out"};
    call << "-a"
         << "sign fileName=stamp.png alignment=66 margins=[0,0,3,2]"
         << "-a"
         << "brightness-contrast brightness=20"
         << "-a"
         << "sign fileName=stamp.png alignment=33 margins=[1,2,0,0] opacity=50"
         << "-a"
         << "watermark text=\"\"";
    QStringList names;
    for (int i = 0; i < 20; ++i) {
        names.append(QStringLiteral("%1.png").arg(i, 2, 10, QLatin1Char('0')));
        StorePicture(names.last(), Ramp(40 + i, 30));
    }
    const Outcome outcome = Run(call + names);
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(Files("out"), names);
    const auto half = [](int under, int over) { return (under + over + 1) / 2; };
    for (int i = 0; i < 20; ++i) {
        QImage expected = Brighter(Ramp(40 + i, 30), 20, Ramp(40 + i, 30).rect());
        for (int y = 0; y < 5; ++y) {
            for (int x = 0; x < 6; ++x) {
                expected.setPixel(31 + i + x, 23 + y, qRgb(30, 40, 50));
                const QRgb under = expected.pixel(1 + x, 2 + y);
                expected.setPixel(
                    1 + x, 2 + y,
                    qRgb(half(qRed(under), 10), half(qGreen(under), 20), half(qBlue(under), 30)));
            }
        }
        QCOMPARE(Picture("out/" + names[i]), expected);
    }
}

void TestAdjust::AnOverlayKeepsToTheMask()
{
    QImage stamp(40, 30, QImage::Format_RGB32);
    stamp.fill(qRgb(1, 2, 3));
    StorePicture("stamp.png", stamp);
    QImage mask(5, 4, QImage::Format_RGB32);
    mask.fill(Qt::white);
    StorePicture("mask.png", mask);
    StorePicture("in.png", Ramp());
    const Outcome outcome = Run({"apply", "-a", "sign fileName=stamp.png margins=[0,0,0,0]", "-s", "mask.png",
                                 "--offset", "7,9", "in.png", "-o", "out.png"});
    QCOMPARE(outcome.err, QString());
    QImage expected = Ramp();
    for (int y = 9; y < 13; ++y)
        for (int x = 7; x < 12; ++x)
            expected.setPixel(x, y, qRgb(1, 2, 3));
    QCOMPARE(Picture("out.png"), expected);
}

void TestAdjust::AStampThatCannotBeReadFailsEachPicture_data()
{
    QTest::addColumn<QString>("stamp");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing") << "missing.png"
                             << "missing.png: No such file";
    QTest::newRow("a pipe") << "pipe.png"
                            << "pipe.png: it is not a regular file";
    QTest::newRow("a folder") << "."
                              << ".: it is a folder";
    QTest::newRow("a text") << "text.png"
                            << "text.png: ";
}

void TestAdjust::AStampThatCannotBeReadFailsEachPicture()
{
    QFETCH(QString, stamp);
    QFETCH(QString, reason);
    StorePicture("a.png", Ramp());
    StorePicture("b.png", Ramp());
    Store(Path("text.png"), "this is no picture");
    QCOMPARE(::mkfifo(QFile::encodeName(Path("pipe.png")).constData(), 0600), 0);
    const Outcome outcome = Run({"apply", "-a", "sign fileName=" + stamp, "a.png", "b.png", "-o", "out"});
    QCOMPARE(outcome.status, 1);
    for (const char* const input : {"a.png", "b.png"})
        QVERIFY2(outcome.err.contains(QStringLiteral("adjust: %1: ").arg(QLatin1String(input)) + reason),
                 qPrintable(outcome.err));
    QCOMPARE(outcome.err.count(QStringLiteral("adjust: ")), 2);
    QCOMPARE(Files("out"), QStringList());
}

void TestAdjust::AStampWithoutAFileIsToldOf()
{
    StorePicture("a.png", Ramp());
    StorePicture("b.png", Ramp());
    const Outcome outcome = Run({"apply", "-a", "sign", "a.png", "b.png", "-o", "out"});
    QCOMPARE(outcome.err, QStringLiteral("adjust: note: sign: no image is chosen, so nothing is drawn\n"));
    QCOMPARE(outcome.status, 0);
    QCOMPARE(Picture("out/b.png"), Ramp());
}

void TestAdjust::NeedsNoDisplay()
{
    StorePicture("in.png", Ramp());
    QProcessEnvironment bare = Environment();
    for (const char* name : {"WAYLAND_DISPLAY", "XAUTHORITY", "XDG_RUNTIME_DIR", "XDG_SESSION_TYPE", "TERM"})
        bare.remove(QLatin1String(name));
    const Outcome outcome = Run({"apply", "-a", "brightness-contrast", "in.png", "-o", "out.png"}, bare);
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.status, 0);
}

void TestAdjust::FullStandardOutputIsAFailure()
{
    QProcess process;
    process.setProcessEnvironment(Environment());
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(QStringLiteral(ADJUST_PROGRAM), {"list"});
    QVERIFY(process.waitForFinished(PatienceMs));
    QCOMPARE(process.exitCode(), 1);
    QVERIFY(process.readAllStandardError().contains("standard output"));
}

void TestAdjust::NamesBeyondAsciiWork()
{
    const QString name = QStringLiteral("Straße 東京.png");
    StorePicture(name, Ramp());
    const Outcome outcome =
        Run({"apply", "-a", "brightness-contrast", name, QStringLiteral("fehlt-é.png"), "-o", "out"});
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.err.contains(QStringLiteral("fehlt-é.png: ")), qPrintable(outcome.err));
    QCOMPARE(Files("out"), QStringList(name));
}

void TestAdjust::AnInterruptLeavesWholeFilesOnly_data()
{
    QTest::addColumn<QString>("step");
    QTest::newRow("converted") << "brightness-contrast brightness=20";
    QTest::newRow("drawn") << "watermark text=Example vrtTiles=9 angle=30";
    QTest::newRow("filled by a preview") << "fill-color opacity=20";
    QTest::newRow("replaced by a preview") << "replace-color tolerance=255";
}

void TestAdjust::AnInterruptLeavesWholeFilesOnly()
{
    QFETCH(QString, step);
    QStringList call{"apply", "-a", step, "-j", "2", "-o", "out"};
    StorePicture("0.bmp", Ramp(1500, 1000));
    for (int i = 0; i < 40; ++i) {
        QVERIFY(i == 0 || QFile::copy(Path("0.bmp"), Path(QStringLiteral("%1.bmp").arg(i))));
        call.append(QStringLiteral("%1.bmp").arg(i));
    }
    QProcess process;
    process.setWorkingDirectory(m_folder->path());
    process.setProcessEnvironment(Environment());
    process.start(QStringLiteral(ADJUST_PROGRAM), call);
    QVERIFY(process.waitForStarted(PatienceMs));
    QTRY_VERIFY_WITH_TIMEOUT(Files("out").size() >= 3, PatienceMs);
    QCOMPARE(::kill(pid_t(process.processId()), SIGINT), 0);
    QVERIFY(process.waitForFinished(PatienceMs));
    QCOMPARE(process.exitStatus(), QProcess::CrashExit); // ended by the signal, as its caller expects
    QCOMPARE(process.exitCode(), SIGINT);
    QVERIFY(process.readAllStandardError().contains("interrupted"));
    const QStringList written = Files("out");
    QVERIFY2(written.size() < 40, "the interrupt came too late to say anything");
    for (const QString& name : written) {
        QVERIFY2(name.endsWith(QLatin1String(".bmp")), qPrintable(name));
        QCOMPARE(Picture("out/" + name).size(), QSize(1500, 1000));
    }
}

void TestAdjust::SelectiveColorsTravelAsAPreset()
{
    const QString targets =
        QStringLiteral("[[1,2,3,4],[5,6,7,8],[0,0,0,0],[0.5,0,0,0],[0,0,0,0],[0,0,0,0],[0,0,0,0],[0,0,0,0],"
                       "[-100,100,0,0]]");
    QCOMPARE(Run({"preset", "selective-colors", "targets=" + targets, "mode=1", "-o", "p"}).status, 0);
    QVERIFY(BytesOf(Path("p")).startsWith("KVSelectiveColors 1.00000"));
    const Outcome shown = Run({"show", "p", "--json"});
    QCOMPARE(shown.status, 0);
    const QJsonObject object = QJsonDocument::fromJson(shown.out.toUtf8()).object();
    QCOMPARE(object.value("adjustment").toString(), QStringLiteral("selective-colors"));
    QCOMPARE(object.value("fields").toObject(),
             (QJsonObject{{"targets", QJsonDocument::fromJson(targets.toUtf8()).array()}, {"mode", 1}}));
    for (const char* const wrong : {"targets=[[1,2,3,4]]", "targets=[1,2]", "targets=[]", "mode=2", "mode=-1",
                                    "mode=0.5", "targets=reds"})
        QCOMPARE(Run({"preset", "selective-colors", wrong, "-o", "q"}).status, 2);
}

/// Pure red belongs to the reds alone: half of full cyan is 127 levels, and all its yellow is taken away.
void TestAdjust::SelectiveColorsAreAppliedInTheSelection()
{
    QImage red(50, 40, QImage::Format_RGB32);
    red.fill(qRgb(255, 0, 0));
    StorePicture("in.png", red);
    QImage mask(10, 10, QImage::Format_RGB32);
    mask.fill(Qt::white);
    StorePicture("mask.png", mask);
    const QString reds =
        QStringLiteral("selective-colors "
                       "targets=[[50,0,-100,0],[0,0,0,0],[0,0,0,0],[0,0,0,0],[0,0,0,0],[0,0,0,0],[0,0,0,0],"
                       "[0,0,0,0],[0,0,0,0]] mode=");
    for (const auto& [mode, expected] : {std::pair{"0", qRgb(255, 0, 255)}, {"1", qRgb(128, 0, 255)}}) {
        const Outcome outcome = Run({"apply", "-a", reds + mode, "-s", "mask.png", "--offset", "20,10",
                                     "--force", "in.png", "-o", "out.png"});
        QCOMPARE(outcome.err, QString());
        QCOMPARE(outcome.status, 0);
        QImage adjusted = red;
        for (int y = 10; y < 20; ++y)
            for (int x = 20; x < 30; ++x)
                adjusted.setPixel(x, y, expected);
        QCOMPARE(Picture("out.png").convertToFormat(QImage::Format_RGB32), adjusted);
    }
}

void TestAdjust::EveryAdjustmentGivesTheBytesOfItsTask_data()
{
    QTest::addColumn<QString>("step");
    for (const operations::Adjustment& adjustment : operations::Catalog::All())
        QTest::newRow(qPrintable(adjustment.name)) << adjustment.name;
    QTest::newRow("a stamp") << "sign fileName=stamp.png opacity=60 blendingMode=13";
    QTest::newRow("a turned text") << "watermark text=Hello angle=30 opacity=40 hrzTiles=2 color=#ff8000";
    QTest::newRow("the advanced balance")
        << "white-balance enhanced=true autoStrength=70 useTemperature=true";
    QTest::newRow("a corner") << "replace-color position=2 tolerance=90 color=#ff8000 opacity=50";
}

void TestAdjust::EveryAdjustmentGivesTheBytesOfItsTask()
{
    QFETCH(QString, step);
    const QImage source = ImageToQImage(TestPictures::Noise(200, 150));
    StorePicture("in.png", source);
    StorePicture("stamp.png", ImageToQImage(TestPictures::Noise(30, 20)));
    QImage mask(60, 50, QImage::Format_RGB32);
    mask.fill(qRgb(200, 200, 200));
    StorePicture("mask.png", mask);
    const Outcome outcome =
        Run({"apply", "-a", step, "-s", "mask.png", "--offset", "-5,20", "in.png", "-o", "out.png"});
    QCOMPARE(outcome.status, 0);

    QStringList words = step.split(QLatin1Char(' '));
    const auto settings = operations::Catalog::Find(words.takeFirst())->makeSettings();
    for (const QString& word : words)
        QCOMPARE(settings->SetFromText(word.startsWith("fileName") ? "fileName=" + Path("stamp.png") : word),
                 QString());
    const auto selection = operations::Selection::Of(TestPictures::Grey(60, 50, 200), QPoint(-5, 20));
    for (int i = 0; i < 60 * 50; ++i)
        selection.mask.Row(i / 60)[i % 60].a = 200;
    const RGBA32iImage expected =
        settings->MakeTask().ApplyToCopy(ImageFromQImage(source), selection).picture;
    QVERIFY(TestPictures::AreEqual(ImageFromQImage(Picture("out.png")), expected));
}

void TestAdjust::NoValueIsRoundedToWhatAControlCanShow_data()
{
    QTest::addColumn<QString>("fine");
    QTest::addColumn<QString>("rounded");
    QTest::newRow("gamma") << "gamma gamma=1.234"
                           << "gamma gamma=1.23";
    QTest::newRow("exposure") << "exposure exposure=0.00049"
                              << "exposure exposure=0.0005";
}

/// The exposure's difference is below what eight bits show, so that one is told by the settings alone.
void TestAdjust::NoValueIsRoundedToWhatAControlCanShow()
{
    QFETCH(QString, fine);
    QFETCH(QString, rounded);
    StorePicture("in.png", ImageToQImage(TestPictures::Noise(200, 150)));
    QCOMPARE(Run({"apply", "-a", fine, "in.png", "-o", "fine.png"}).status, 0);
    const QStringList words = fine.split(QLatin1Char(' '));
    const auto settings = operations::Catalog::Find(words.first())->makeSettings();
    QCOMPARE(settings->SetFromText(words.last()), QString());
    const RGBA32iImage expected = settings->MakeTask().ApplyToCopy(TestPictures::Noise(200, 150)).picture;
    QVERIFY(TestPictures::AreEqual(ImageFromQImage(Picture("fine.png")), expected));
    const auto coarse = operations::Catalog::Find(words.first())->makeSettings();
    QCOMPARE(coarse->SetFromText(rounded.split(QLatin1Char(' ')).last()), QString());
    QVERIFY(coarse->ToJson() != settings->ToJson());
    if (words.first() == QLatin1String("gamma"))
        QVERIFY(!TestPictures::AreEqual(coarse->MakeTask().ApplyToCopy(TestPictures::Noise(200, 150)).picture,
                                        expected));
}

QTEST_MAIN(TestAdjust)
#include "tst_adjust.moc"
