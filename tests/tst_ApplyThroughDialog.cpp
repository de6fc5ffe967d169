#include "KVFillColorWidget.h"
#include "SlowAdjustment.h"
#include "TestPictures.h"
#include "catalog/ApplyThroughDialog.h"

#include <QApplication>
#include <QFutureInterface>
#include <QPointer>
#include <QTest>
#include <QTimer>

namespace {

constexpr int Width = 40;
constexpr int Height = 30;

/// An adjustment whose job fails.
class FailingAdjustment : public YDAdjustmentWidget
{
public:
    enum class Failure
    {
        EmptyResult, ///< as where memory is short
        NoResult,    ///< as where a device drops what it was asked for
        NoJob,
    };

    explicit FailingAdjustment(Failure failure)
        : YDAdjustmentWidget(true, nullptr, Qt::WindowFlags()), m_failure(failure)
    {}

    void Reset() override {}
    void StartJobWatching(JobWatcher* watcher) override
    {
        if (m_failure == Failure::EmptyResult)
            Launch(watcher, &Process, MakePreviewJob());
        if (m_failure == Failure::NoResult) {
            QFutureInterface<RGBA32iImage> promise;
            promise.reportStarted();
            watcher->setFuture(promise.future());
            promise.reportFinished();
        }
    }

private:
    static RGBA32iImage Process(const YDAdjustmentJob&) { return {}; }

    const Failure m_failure;
};

QString ApplyTo(RGBA32iImage& image, YDAdjustmentWidget& dialog)
{
    return ApplyThroughDialog(dialog, image, RGBA32iImage(), QPoint(), QRect());
}

/// What is wrong where a slow adjustment makes a picture `grey`.
QString ApplyGrey(RGBA32iImage& image, int grey)
{
    SlowAdjustment dialog(true, nullptr);
    dialog.SetGrey(grey);
    return ApplyTo(image, dialog);
}

bool IsGrey(const RGBA32iImage& image, int grey)
{
    return TestPictures::AreEqual(image, TestPictures::Grey(Width, Height, grey));
}

} // namespace

Q_DECLARE_METATYPE(FailingAdjustment::Failure)

class TestApplyThroughDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void ThePreviewTakesThePicturesPlace();
    void TheSourceStaysAsItIs();
    void ASelectionLimitsThePreview();
    void AnEmptyPictureIsDoneAtOnce();
    void AFailureIsToldAndLeavesThePicture_data();
    void AFailureIsToldAndLeavesThePicture();
    void EventsAreHandledMeanwhile();
    void NothingIsShown();
    void OneMoreInTheMiddleIsDoneFirst();
    void AJobThatIsStartedAnewIsWaitedFor();
    void TheEndOfTheProgramIsNotHeldUp();
};

void TestApplyThroughDialog::init()
{
    SlowAdjustment::mayEnd = true;
    SlowAdjustment::isStubborn = false;
}

void TestApplyThroughDialog::ThePreviewTakesThePicturesPlace()
{
    RGBA32iImage image = TestPictures::Noise(Width, Height);
    QCOMPARE(ApplyGrey(image, 70), QString());
    QVERIFY(IsGrey(image, 70));
}

void TestApplyThroughDialog::TheSourceStaysAsItIs()
{
    const RGBA32iImage source = TestPictures::Noise(Width, Height);
    RGBA32iImage image = source;
    QCOMPARE(ApplyGrey(image, 70), QString());
    QVERIFY(TestPictures::AreEqual(source, TestPictures::Noise(Width, Height)));
}

void TestApplyThroughDialog::ASelectionLimitsThePreview()
{
    KVFillColorWidget dialog(true, nullptr, Qt::WindowFlags());
    KVFillColorWidget::Params white;
    white.color = Qt::white;
    dialog.SetValue(white);
    const RGBA32iImage mask(2, 3);
    for (int y = 0; y < 3; ++y)
        std::fill_n(mask.Row(y), 2, YDRGBA32i(0xffffffffu));
    RGBA32iImage image = TestPictures::Grey(Width, Height, 9);
    QCOMPARE(ApplyThroughDialog(dialog, image, mask, QPoint(5, 7), QRect(0, 0, 2, 3)), QString());
    const RGBA32iImage expected = TestPictures::Grey(Width, Height, 9);
    for (int y = 7; y < 10; ++y)
        std::fill_n(expected.Row(y) + 5, 2, YDRGBA32i(0xffffffffu));
    QVERIFY(TestPictures::AreEqual(image, expected));
}

void TestApplyThroughDialog::AnEmptyPictureIsDoneAtOnce()
{
    const int begun = SlowAdjustment::jobsBegun;
    RGBA32iImage image;
    QCOMPARE(ApplyGrey(image, 70), QString());
    QVERIFY(image.IsEmpty());
    QCOMPARE(SlowAdjustment::jobsBegun.load(), begun);
}

void TestApplyThroughDialog::AFailureIsToldAndLeavesThePicture_data()
{
    QTest::addColumn<FailingAdjustment::Failure>("failure");
    QTest::newRow("an empty result") << FailingAdjustment::Failure::EmptyResult;
    QTest::newRow("no result") << FailingAdjustment::Failure::NoResult;
    QTest::newRow("no job") << FailingAdjustment::Failure::NoJob;
}

void TestApplyThroughDialog::AFailureIsToldAndLeavesThePicture()
{
    QFETCH(FailingAdjustment::Failure, failure);
    FailingAdjustment dialog(failure);
    const RGBA32iImage source = TestPictures::Noise(Width, Height);
    RGBA32iImage image = source;
    const QString problem = ApplyTo(image, dialog);
    QVERIFY2(problem.contains(QStringLiteral("memory")), qPrintable(problem));
    QVERIFY(image.SharesPixelsWith(source));
    QVERIFY(TestPictures::AreEqual(image, TestPictures::Noise(Width, Height)));
}

void TestApplyThroughDialog::EventsAreHandledMeanwhile()
{
    SlowAdjustment::mayEnd = false;
    QTimer::singleShot(0, qApp, [] { SlowAdjustment::mayEnd = true; });
    RGBA32iImage image = TestPictures::Noise(Width, Height);
    QCOMPARE(ApplyGrey(image, 70), QString()); // the job would go on for ever
    QVERIFY(IsGrey(image, 70));
}

void TestApplyThroughDialog::NothingIsShown()
{
    SlowAdjustment::mayEnd = false;
    bool isShown = true;
    QTimer::singleShot(0, qApp, [&isShown] {
        const QWidgetList windows = QApplication::topLevelWidgets();
        isShown = std::any_of(windows.begin(), windows.end(),
                              [](const QWidget* window) { return window->isVisible(); });
        SlowAdjustment::mayEnd = true;
    });
    RGBA32iImage image = TestPictures::Noise(Width, Height);
    QCOMPARE(ApplyGrey(image, 70), QString());
    QVERIFY(!isShown);
}

void TestApplyThroughDialog::OneMoreInTheMiddleIsDoneFirst()
{
    SlowAdjustment::mayEnd = false;
    RGBA32iImage inner = TestPictures::Noise(Width, Height);
    QString innerProblem = QStringLiteral("not begun");
    QTimer::singleShot(0, qApp, [&] {
        QTimer::singleShot(0, qApp, [] { SlowAdjustment::mayEnd = true; });
        innerProblem = ApplyGrey(inner, 20);
    });
    RGBA32iImage outer = TestPictures::Noise(Width, Height);
    QCOMPARE(ApplyGrey(outer, 70), QString());
    QCOMPARE(innerProblem, QString());
    QVERIFY(IsGrey(inner, 20));
    QVERIFY(IsGrey(outer, 70));
}

void TestApplyThroughDialog::AJobThatIsStartedAnewIsWaitedFor()
{
    SlowAdjustment::mayEnd = false;
    SlowAdjustment dialog(true, nullptr);
    dialog.SetGrey(20);
    QTimer::singleShot(0, qApp, [&dialog] {
        dialog.SetGrey(70); // as a widget that takes an analysis into its settings
        dialog.FlushPendingChange();
        SlowAdjustment::mayEnd = true;
    });
    RGBA32iImage image = TestPictures::Noise(Width, Height);
    QCOMPARE(ApplyTo(image, dialog), QString());
    QVERIFY(IsGrey(image, 70));
}

void TestApplyThroughDialog::TheEndOfTheProgramIsNotHeldUp()
{
    SlowAdjustment::mayEnd = false;
    const RGBA32iImage source = TestPictures::Noise(Width, Height);
    RGBA32iImage image = source;
    QString problem;
    QTimer::singleShot(0, qApp, [&] {
        QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });
        problem = ApplyGrey(image, 70); // the job would go on for ever
    });
    QCoreApplication::exec();
    QCOMPARE(problem, QStringLiteral("It was interrupted."));
    QVERIFY(image.SharesPixelsWith(source));
}

QTEST_MAIN(TestApplyThroughDialog)
#include "tst_ApplyThroughDialog.moc"
