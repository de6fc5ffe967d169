#include "TestPictures.h"
#include "YD@Name@Widget.h"

#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTest>

namespace {

using Params = YD@Name@Widget::Params;

Params Record(int amount)
{
    Params params;
    params.amount = amount;
    return params;
}

/// A panel of the adjustment, its controls and what it announces.
struct Fixture
{
    YD@Name@Widget widget{false, nullptr, Qt::WindowFlags()};
    QSlider* const slider = widget.findChild<QSlider*>(QStringLiteral("m_pAmountSlider"));
    QSpinBox* const spin = widget.findChild<QSpinBox*>(QStringLiteral("m_pAmountSpin"));
    QSignalSpy changes{&widget, &YD@Name@Widget::ValueChanged};
};

RGBA32iImage Converted(YD@Name@Widget& widget, const RGBA32iImage& source)
{
    RGBA32iImage image = source.DeepCopy();
    widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    return image;
}

} // namespace

class TestYD@Name@Widget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void SliderAndSpinBoxFollowEachOtherAndAnnounceOnce();
    void SettingARecordAnnouncesNothing();
    void ARecordOutsideTheControlsIsKept();
    void ResetShowsTheDefaultsAndAnnouncesThem();
    void TheStreamIsTagAndAmount();
    void ConversionDoesWhatTheRecordSays();
};

void TestYD@Name@Widget::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_YD@Name@Widget"));
}

void TestYD@Name@Widget::SliderAndSpinBoxFollowEachOtherAndAnnounceOnce()
{
    Fixture f;
    f.slider->setValue(40);
    QCOMPARE(f.spin->value(), 40);
    QCOMPARE(f.widget.GetValue().amount, 40);
    QCOMPARE(f.changes.count(), 1);
    f.spin->setValue(50);
    QCOMPARE(f.slider->value(), 50);
    QCOMPARE(f.widget.GetValue().amount, 50);
    QCOMPARE(f.changes.count(), 2);
}

void TestYD@Name@Widget::SettingARecordAnnouncesNothing()
{
    Fixture f;
    f.widget.SetValue(Record(70));
    QCOMPARE(f.spin->value(), 70);
    QCOMPARE(f.slider->value(), 70);
    QCOMPARE(f.changes.count(), 0);
    f.spin->setValue(71); // connected again, once
    QCOMPARE(f.changes.count(), 1);
}

void TestYD@Name@Widget::ARecordOutsideTheControlsIsKept()
{
    Fixture f;
    f.widget.SetValue(Record(1000));
    QCOMPARE(f.widget.GetValue().amount, 1000);
    QCOMPARE(f.spin->value(), 100);
}

void TestYD@Name@Widget::ResetShowsTheDefaultsAndAnnouncesThem()
{
    Fixture f;
    f.widget.SetValue(Record(70));
    f.widget.Reset();
    QCOMPARE(f.widget.GetValue().amount, 0);
    QCOMPARE(f.spin->value(), 0);
    QCOMPARE(f.changes.count(), 1);
}

void TestYD@Name@Widget::TheStreamIsTagAndAmount()
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << Record(70);
    QCOMPARE(bytes, QByteArray("KV@Name@ 1.00000") + QByteArray::fromHex("00000046"));
    QDataStream in(bytes);
    Params params;
    QVERIFY(params.Read(in));
    QVERIFY(in.atEnd());
    QCOMPARE(params.amount, 70);
}

void TestYD@Name@Widget::ConversionDoesWhatTheRecordSays()
{
    Fixture f;
    const RGBA32iImage source = TestPictures::Random(40, 30, 3);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), source));
    f.widget.SetValue(Record(70));
    const RGBA32iImage converted = Converted(f.widget, source);
    QVERIFY(!TestPictures::AreEqual(converted, source));
    QVERIFY(TestPictures::AreEqual(converted, operations::MakeTask(Record(70)).ApplyToCopy(source).picture));
}

QTEST_MAIN(TestYD@Name@Widget)
#include "tst_YD@Name@Widget.moc"
