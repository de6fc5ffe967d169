#include "Announcements.h"
#include "ColorDialogDriver.h"
#include "TestColors.h"
#include "TestPictures.h"
#include "YDColorizeWidget.h"
#include "image/YDIterativeColorizeTransformation.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>

#include <limits>

namespace {

using namespace ColorDialogDriver;
using Params = YDColorizeWidget::Params;

constexpr int PatienceMs = 20000;
const QColor Pink(255, 210, 255);
const QColor Red(200, 10, 20);
const QColor Blue(10, 20, 200);

Params Record(const QColor& color, int amount)
{
    Params params;
    params.color = color;
    params.amount = amount;
    return params;
}

QByteArray Written(const Params& params)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << params;
    return bytes;
}

QRegularExpression ReadLine()
{
    return QRegularExpression(QStringLiteral("^\\[src/YDColorizeWidget:322\\] Read colorize data error\\.$"));
}

RGBA32iImage Converted(YDColorizeWidget& widget, const RGBA32iImage& source)
{
    RGBA32iImage image = source.DeepCopy();
    widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    return image;
}

/// What the rule makes of every pixel, by its pixel form.
RGBA32iImage Expected(const RGBA32iImage& source, QRgb color, int amount)
{
    const RGBA32iImage image = source.DeepCopy();
    YDIterativeColorizeTransformation rule(color, amount);
    for (int y = 0; y < image.Height(); ++y) {
        rule.SetProcessingBuffer(image.Row(y));
        for (int x = 0; x < image.Width(); ++x)
            rule.ProcessPixel(x);
    }
    return image;
}

/// A widget of the adjustment and its controls.
struct Fixture
{
    explicit Fixture(bool isDialog = true) : widget(isDialog, nullptr, Qt::WindowFlags()) {}

    template <class T>
    T* Child(const char* name) const
    {
        return widget.findChild<T*>(QString::fromLatin1(name));
    }

    YDColorizeWidget widget;
    QPushButton* const button = Child<QPushButton>("m_pColor");
    QSlider* const slider = Child<QSlider>("horizontalSlider");
    KVSpinBox* const amount = Child<KVSpinBox>("m_pAmount");
};

} // namespace

class TestYDColorizeWidget : public QObject
{
    Q_OBJECT

private slots:
    void TheFormIsAsDesigned();
    void OpensShowingItsRecord();
    void AChangeOfTheAmountIsAnnouncedOnce_data();
    void AChangeOfTheAmountIsAnnouncedOnce();
    void TheColourDialogIsFollowed_data() { AddRows(Red, Blue); }
    void TheColourDialogIsFollowed();
    void AnAcceptedColourThatIsNotShownAnyMoreIsTaken();
    void AHostileColourIsNoChangeOfItself();
    void MayBeDestroyedWhileTheDialogIsOpen();
    void SettingARecordAnnouncesNothing();
    void ResetShowsTheDefaultsAndAnnouncesThem();
    void TheStreamIsTagColourAndAmount();
    void AStreamThatIsNoRecordGivesDefaultsAndOneLine_data();
    void AStreamThatIsNoRecordGivesDefaultsAndOneLine();
    void AReadOnlyStreamLogsTheFailedWrite();
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data();
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm();
    void ThePreviewEqualsTheConversion();
};

void TestYDColorizeWidget::TheFormIsAsDesigned()
{
    const Fixture f(false);
    QCOMPARE(f.widget.windowTitle(), QStringLiteral("Colorize"));
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Colorize"));
    QCOMPARE(f.Child<QLabel>("label_2")->text(), QStringLiteral("Color:"));
    QCOMPARE(f.Child<QLabel>("label")->text(), QStringLiteral("Amount:"));
    QVERIFY(f.button->text().isEmpty());
    QCOMPARE(f.button->minimumSize(), f.button->maximumSize());
    QVERIFY(!qobject_cast<KVSlider*>(f.slider)); // a plain one
    QCOMPARE(f.slider->orientation(), Qt::Horizontal);
    QCOMPARE(f.slider->minimum(), 0);
    QCOMPARE(f.slider->maximum(), 100);
    QCOMPARE(f.amount->minimum(), 0);
    QCOMPARE(f.amount->maximum(), 100);
    QCOMPARE(f.amount->suffix(), QStringLiteral("%"));
}

void TestYDColorizeWidget::OpensShowingItsRecord()
{
    for (const bool isDialog : {false, true}) {
        const Fixture f(isDialog);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Pink, 25)));
        QCOMPARE(f.amount->value(), 25);
        QCOMPARE(f.slider->value(), 25);
        QCOMPARE(SwatchOf(*f.button), Pink.rgba());
    }
}

void TestYDColorizeWidget::AChangeOfTheAmountIsAnnouncedOnce_data()
{
    QTest::addColumn<QString>("control");
    QTest::newRow("slider") << "horizontalSlider";
    QTest::newRow("spin box") << "m_pAmount";
}

void TestYDColorizeWidget::AChangeOfTheAmountIsAnnouncedOnce()
{
    QFETCH(QString, control);
    Fixture f;
    Announcements announcements(f.widget);
    f.widget.findChild<QWidget*>(control)->setProperty("value", 60);
    QCOMPARE(announcements.Take(), 1);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Pink, 60)));
    QCOMPARE(f.slider->value(), 60);
    QCOMPARE(f.amount->value(), 60);
}

void TestYDColorizeWidget::TheColourDialogIsFollowed()
{
    QFETCH(Colors, picks);
    QFETCH(bool, isAccepted);
    QFETCH(int, before);
    QFETCH(int, after);
    Fixture f;
    Announcements announcements(f.widget);
    InTheDialog([&](KVColorDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Select a color"));
        QCOMPARE(dialog.GetColor(), Pink);
        QCOMPARE(dialog.parentWidget(), &f.widget);
        for (const QColor& color : picks) {
            Pick(dialog, {color});
            QCOMPARE(f.widget.GetValue().color, color);
            QCOMPARE(SwatchOf(*f.button), color.rgba());
        }
        QCOMPARE(announcements.Take(), before);
        Close(dialog, isAccepted);
    });
    f.button->click();
    QCOMPARE(announcements.Take(), after);
    const QColor result = isAccepted && !picks.isEmpty() ? picks.last() : Pink;
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(result, 25)));
    QCOMPARE(SwatchOf(*f.button), result.rgba());
}

void TestYDColorizeWidget::AnAcceptedColourThatIsNotShownAnyMoreIsTaken()
{
    Fixture f;
    Announcements announcements(f.widget);
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, {Red});
        QCOMPARE(announcements.Take(), 1);
        f.widget.SetValue(Record(Blue, 30)); // a preset that is loaded meanwhile
        dialog.accept();
    });
    f.button->click();
    QCOMPARE(announcements.Take(), 1);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Red, 30)));
}

void TestYDColorizeWidget::AHostileColourIsNoChangeOfItself()
{
    for (const QColor& hostile : {TestColors::NoNumbers(), TestColors::OfNoModel()}) {
        Fixture f;
        f.widget.SetValue(Record(hostile, 25));
        Announcements announcements(f.widget);
        for (const bool isAccepted : {false, true}) {
            InTheDialog([&](KVColorDialog& dialog) { Close(dialog, isAccepted); });
            f.button->click();
            QCOMPARE(announcements.Take(), 0);
            QCOMPARE(TestColors::Stored(f.widget.GetValue().color), TestColors::Stored(hostile));
        }
    }
}

void TestYDColorizeWidget::MayBeDestroyedWhileTheDialogIsOpen()
{
    auto f = std::make_unique<Fixture>();
    bool wasOpen = false;
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, {Red});
        wasOpen = true;
        f.reset();
    });
    f->button->click();
    QVERIFY(wasOpen);
    QVERIFY(!f);
    QVERIFY(!QApplication::activeModalWidget());
}

void TestYDColorizeWidget::SettingARecordAnnouncesNothing()
{
    Fixture f;
    Announcements announcements(f.widget);
    f.widget.SetValue(Record(Blue, 70));
    QCOMPARE(announcements.Take(), 0);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Blue, 70)));
    QCOMPARE(f.amount->value(), 70);
    QCOMPARE(f.slider->value(), 70);
    QCOMPARE(SwatchOf(*f.button), Blue.rgba());
    f.amount->setValue(71); // connected again, and once
    QCOMPARE(announcements.Take(), 1);
}

void TestYDColorizeWidget::ResetShowsTheDefaultsAndAnnouncesThem()
{
    Fixture f;
    f.widget.SetValue(Record(Blue, 70));
    Announcements announcements(f.widget);
    for (int round = 0; round < 2; ++round) { // the defaults too
        f.widget.Reset();
        QCOMPARE(announcements.Take(), 1);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(Pink, 25)));
        QCOMPARE(f.amount->value(), 25);
        QCOMPARE(SwatchOf(*f.button), Pink.rgba());
    }
}

void TestYDColorizeWidget::TheStreamIsTagColourAndAmount()
{
    const QByteArray expected = QByteArray("KVColorizeFilter 1.00000") +
                                QByteArray::fromHex("01ffffffffd2d2ffff0000") +
                                QByteArray::fromHex("00000019");
    QCOMPARE(Written(Params()), expected);
    QDataStream stream(expected);
    Params params = Record(Blue, 70);
    QVERIFY(params.Read(stream));
    QVERIFY(stream.atEnd());
    QVERIFY(YDRecord::Equal(params, Record(Pink, 25)));
}

void TestYDColorizeWidget::AStreamThatIsNoRecordGivesDefaultsAndOneLine_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = Written(Record(Blue, 70));
    for (int length = 0; length < whole.size(); ++length)
        QTest::addRow("%d bytes", length) << whole.left(length);
    QTest::newRow("another version") << QByteArray(whole).replace("1.00000", "1.00001");
    QTest::newRow("another tag") << QByteArray(whole).replace("KVColorize", "KVcolorize");
}

void TestYDColorizeWidget::AStreamThatIsNoRecordGivesDefaultsAndOneLine()
{
    QFETCH(QByteArray, bytes);
    QDataStream stream(bytes);
    Params params = Record(Red, 1);
    QTest::ignoreMessage(QtDebugMsg, ReadLine());
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Record(Pink, 25)));
}

void TestYDColorizeWidget::AReadOnlyStreamLogsTheFailedWrite()
{
    QDataStream stream(QByteArray(100, 'x'));
    QVERIFY(!Params().Write(stream));
    QTest::ignoreMessage(QtDebugMsg, "[src/YDColorizeWidget:309] Write colorize data error.");
    stream << Params();
}

void TestYDColorizeWidget::RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data()
{
    QTest::addColumn<QByteArray>("color");
    QTest::addColumn<int>("amount");
    QTest::addColumn<quint32>("applied");
    const QByteArray pink = TestColors::Stored(Pink);
    QTest::newRow("as it is") << pink << 25 << Pink.rgba();
    QTest::newRow("lowest amount") << pink << std::numeric_limits<int>::min() << Pink.rgba();
    QTest::newRow("highest amount") << pink << std::numeric_limits<int>::max() << Pink.rgba();
    QTest::newRow("just outside") << pink << 101 << Pink.rgba();
    QTest::newRow("invisible") << TestColors::Stored(QColor(1, 2, 3, 0)) << 100 << 0x00010203u;
    QTest::newRow("no colour") << TestColors::Stored(QColor()) << 100 << 0xff000000u;
    QTest::newRow("no numbers") << TestColors::Stored(TestColors::NoNumbers()) << 100 << 0x00000000u;
    QTest::newRow("far out") << TestColors::Stored(TestColors::FarOut()) << 100 << 0xffff00ffu;
    QTest::newRow("no model there is") << TestColors::Stored(77, {9, 9, 9, 9, 9}) << 100 << 0x00000000u;
}

void TestYDColorizeWidget::RecordsFromOutsideAreKeptAndAppliedWithoutHarm()
{
    QFETCH(QByteArray, color);
    QFETCH(int, amount);
    QFETCH(quint32, applied);
    QByteArray bytes = QByteArray("KVColorizeFilter 1.00000") + color;
    QDataStream(&bytes, QIODevice::WriteOnly | QIODevice::Append) << amount;
    QDataStream stream(bytes);
    Params params;
    QVERIFY(params.Read(stream));
    Fixture f;
    f.widget.SetValue(params);
    QCOMPARE(Written(f.widget.GetValue()), bytes);
    QCOMPARE(f.widget.GetValue().amount, amount);
    QCOMPARE(f.amount->value(), qBound(0, amount, 100));
    QCOMPARE(f.slider->value(), f.amount->value());
    const RGBA32iImage source = TestPictures::Random(40, 30, 5);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), Expected(source, applied, amount)));
}

void TestYDColorizeWidget::ThePreviewEqualsTheConversion()
{
    Fixture f;
    const RGBA32iImage source = TestPictures::Random(500, 300, 6);
    const RGBA32iImage mask = TestPictures::Random(200, 100, 7);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetValue(Record(Red, 80));
    f.widget.SetImage(source, mask, QPoint(-50, 250), QRect(0, 0, 200, 100));
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    RGBA32iImage converted = source.DeepCopy();
    f.widget.ConvertImage(converted, mask, QPoint(-50, 250), QRect(0, 0, 200, 100));
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), converted));
    QVERIFY(!TestPictures::AreEqual(converted, source));
    InTheDialog([&](KVColorDialog& dialog) { // the picture follows while the dialog is open
        Pick(dialog, {Blue});
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
        dialog.reject();
    });
    f.button->click();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 3, PatienceMs);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), converted));
}

QTEST_MAIN(TestYDColorizeWidget)
#include "tst_YDColorizeWidget.moc"
