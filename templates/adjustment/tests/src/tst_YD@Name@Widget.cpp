#include "TestPictures.h"
#include "YD@Name@Widget.h"

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

    void ARecordOutsideTheControlsIsKept();
    void TheStreamIsTagAndAmount();
    void ConversionDoesWhatTheRecordSays();
};

void TestYD@Name@Widget::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_YD@Name@Widget"));
}

void TestYD@Name@Widget::ARecordOutsideTheControlsIsKept()
{
    YD@Name@Widget widget(false, nullptr, Qt::WindowFlags());
    widget.SetValue(Record(1000));
    QCOMPARE(widget.GetValue().amount, 1000);
    QCOMPARE(widget.findChild<QSpinBox*>(QStringLiteral("m_pAmountSpin"))->value(), 100);
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
    YD@Name@Widget widget(false, nullptr, Qt::WindowFlags());
    const RGBA32iImage source = TestPictures::Random(40, 30, 3);
    QVERIFY(TestPictures::AreEqual(Converted(widget, source), source));
    widget.SetValue(Record(70));
    const RGBA32iImage converted = Converted(widget, source);
    QVERIFY(!TestPictures::AreEqual(converted, source));
    QVERIFY(TestPictures::AreEqual(converted, operations::MakeTask(Record(70)).ApplyToCopy(source).picture));
}

QTEST_MAIN(TestYD@Name@Widget)
#include "tst_YD@Name@Widget.moc"
