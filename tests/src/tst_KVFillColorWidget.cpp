#include "KVFillColorWidget.h"
#include "PanelKit.h"
#include "SourceOver.h"
#include "TestColors.h"
#include "TestPictures.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QSignalSpy>

namespace {

using namespace PanelKit;
using Params = KVFillColorWidget::Params;

const QColor Red(200, 10, 20);

Params Record(const QColor& color, int opacity)
{
    Params params;
    params.color = color;
    params.opacity = opacity;
    return params;
}

RGBA32iImage OnePixel(const YDRGBA32i& pixel)
{
    const RGBA32iImage image(1, 1);
    image.Row(0)[0] = pixel;
    return image;
}

/// `fill` laid over every pixel of `source` within `where`.
RGBA32iImage Filled(const RGBA32iImage& source, const YDRGBA32i& fill, const QRect& where)
{
    const RGBA32iImage image = source.DeepCopy();
    for (int y = where.top(); y <= where.bottom(); ++y)
        for (int x = where.left(); x <= where.right(); ++x)
            image.Row(y)[x] = LaidOver(fill, image.Row(y)[x]);
    return image;
}

RGBA32iImage Filled(const RGBA32iImage& source, const YDRGBA32i& fill)
{
    return Filled(source, fill, QRect(0, 0, source.Width(), source.Height()));
}

/// A widget of the adjustment and its controls.
struct Fixture : Panel<KVFillColorWidget>
{
    using Panel::Panel;

    KVSlider* const slider = Child<KVSlider>("horizontalSlider");
    KVSpinBox* const opacity = Child<KVSpinBox>("m_pOpacity");
};

} // namespace

class TestKVFillColorWidget : public QObject
{
    Q_OBJECT

private slots:
    void TheOpacityIsTheFillsAlpha_data();
    void TheOpacityIsTheFillsAlpha();
    void TheFillIsLaidOverThePicture();
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data();
    void RecordsFromOutsideAreKeptAndAppliedWithoutHarm();
    void OnlyWhatIsSelectedIsFilled();
    void TheProgressCountsRows();
};

void TestKVFillColorWidget::TheOpacityIsTheFillsAlpha_data()
{
    QTest::addColumn<int>("opacity");
    QTest::addColumn<int>("alpha");
    QTest::newRow("0 %") << 0 << 0;
    QTest::newRow("1 %") << 1 << 2;
    QTest::newRow("50 %") << 50 << 127;
    QTest::newRow("99 %") << 99 << 252;
    QTest::newRow("100 %") << 100 << 255;
}

/// Over nothing, the fill is what is seen.
void TestKVFillColorWidget::TheOpacityIsTheFillsAlpha()
{
    QFETCH(int, opacity);
    QFETCH(int, alpha);
    Fixture f;
    f.widget.SetValue(Record(QColor(200, 100, 50, 9), opacity)); // the colour's own alpha is lost
    const RGBA32iImage filled = f.Preview(OnePixel(YDRGBA32i(0, 0, 0, 0)));
    QVERIFY(!filled.IsEmpty());
    const YDRGBA32i expected = alpha == 0 ? YDRGBA32i(0, 0, 0, 0) : YDRGBA32i(50, 100, 200, quint8(alpha));
    QCOMPARE(QRgb(filled.Row(0)[0]), QRgb(expected));
}

void TestKVFillColorWidget::TheFillIsLaidOverThePicture()
{
    Fixture f;
    f.widget.SetValue(Record(QColor(200, 100, 50), 50));
    const RGBA32iImage filled = f.Preview(OnePixel(YDRGBA32i(30, 20, 10, 255)));
    QVERIFY(!filled.IsEmpty());
    // (200 * 127 + 10 * 128) / 255 = 104.6, (100 * 127 + 20 * 128) / 255 = 59.8, (50 * 127 + 30 * 128) / 255
    // = 40.0
    QCOMPARE(QRgb(filled.Row(0)[0]), qRgba(105, 60, 40, 255));
}

void TestKVFillColorWidget::RecordsFromOutsideAreKeptAndAppliedWithoutHarm_data()
{
    QTest::addColumn<QByteArray>("color");
    QTest::addColumn<int>("opacity");
    QTest::addColumn<quint32>("fill");
    const QByteArray red = TestColors::Stored(Red);
    QTest::newRow("lowest opacity") << red << Lowest << 0x00c80a14u;
    QTest::newRow("negative") << red << -1 << 0x00c80a14u;
    QTest::newRow("highest opacity") << red << Highest << 0xffc80a14u;
    QTest::newRow("just outside") << red << 101 << 0xffc80a14u;
    QTest::newRow("invisible") << TestColors::Stored(QColor(1, 2, 3, 0)) << 100 << 0xff010203u;
    QTest::newRow("no colour") << TestColors::Stored(QColor()) << 100 << 0xff000000u;
    QTest::newRow("no numbers") << TestColors::Stored(TestColors::NoNumbers()) << 100 << 0xff000000u;
    QTest::newRow("far out") << TestColors::Stored(TestColors::FarOut()) << 100 << 0xffff00ffu;
    QTest::newRow("no model there is") << TestColors::Stored(77, {9, 9, 9, 9, 9}) << 100 << 0xff000000u;
}

void TestKVFillColorWidget::RecordsFromOutsideAreKeptAndAppliedWithoutHarm()
{
    QFETCH(QByteArray, color);
    QFETCH(int, opacity);
    QFETCH(quint32, fill);
    QByteArray bytes = QByteArray("KVFillColor 1.00000") + color;
    QDataStream(&bytes, QIODevice::WriteOnly | QIODevice::Append) << opacity;
    QDataStream stream(bytes);
    Params params;
    QVERIFY(params.Read(stream));
    Fixture f;
    f.widget.SetValue(params);
    QCOMPARE(Written(f.widget.GetValue()), bytes);
    QCOMPARE(f.widget.GetValue().opacity, opacity);
    QCOMPARE(f.opacity->value(), qBound(0, opacity, 100));
    QCOMPARE(f.slider->value(), f.opacity->value());
    const RGBA32iImage source = TestPictures::Random(40, 30, 5);
    QVERIFY(TestPictures::AreEqual(f.Preview(source), Filled(source, YDRGBA32i(fill))));
}

void TestKVFillColorWidget::OnlyWhatIsSelectedIsFilled()
{
    Fixture f;
    f.widget.SetValue(Record(Red, 100));
    const RGBA32iImage source = TestPictures::Noise(60, 50);
    const RGBA32iImage mask(20, 10);
    for (int y = 0; y < mask.Height(); ++y)
        std::fill_n(mask.Row(y), mask.Width(), YDRGBA32i(0xffffffffu));
    const RGBA32iImage filled = f.Preview(source, mask, QPoint(50, 15), QRect(0, 0, 20, 10));
    QVERIFY(TestPictures::AreEqual(filled, Filled(source, YDRGBA32i(Red.rgba()), QRect(50, 15, 10, 10))));
}

void TestKVFillColorWidget::TheProgressCountsRows()
{
    Fixture f;
    QSignalSpy ranges(&f.widget, &YDAdjustmentWidget::ProgressRangeChanged);
    QVERIFY(!f.Preview(TestPictures::Noise(30, 70)).IsEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(ranges.contains(QVariantList{0, 70}), PatienceMs);
}

QTEST_MAIN(TestKVFillColorWidget)
#include "tst_KVFillColorWidget.moc"
