#include "image/SelectiveParamsList.h"

#include <QBuffer>
#include <QDataStream>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

const QByteArray Tag("KVSelectiveColors 1.00000");
constexpr int TagLength = 25;
constexpr int CountLength = 4;
constexpr int ValueLength = 8; ///< a float at the precision that a stream has at first
constexpr int ModeLength = 4;
constexpr int Length = TagLength + CountLength + 9 * 4 * ValueLength + ModeLength;

/// Every value of its own: 11, 12, 13, 14, 21 and so on; absolute.
SelectiveParamsList Counted()
{
    SelectiveParamsList list;
    for (int i = 0; i < 9; ++i) {
        const auto tens = float(10 * (i + 1));
        list.targets[i] = {tens + 1.0f, tens + 2.0f, tens + 3.0f, tens + 4.0f};
    }
    list.mode = SelectiveParamsList::Absolute;
    return list;
}

QByteArray Written(const SelectiveParamsList& list)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    return list.Write(stream) ? bytes : QByteArray();
}

bool Read(const QByteArray& bytes, SelectiveParamsList& list)
{
    QDataStream stream(bytes);
    return list.Read(stream);
}

/// The default record's bytes with another number of ranges.
QByteArray WithCount(quint32 count)
{
    QByteArray bytes = Written(SelectiveParamsList());
    QByteArray number;
    QDataStream(&number, QIODevice::WriteOnly) << count;
    return bytes.replace(TagLength, CountLength, number);
}

} // namespace

class TestSelectiveParamsList : public QObject
{
    Q_OBJECT

private slots:
    void HoldsNineZeroEntriesAtFirst();
    void ComparesEveryField();
    void IsWrittenAsTagCountValuesAndMode();
    void ComesBackAsItWasWritten_data();
    void ComesBackAsItWasWritten();
    void ValuesAreKeptAsRead();
    void RefusesOtherStreams_data();
    void RefusesOtherStreams();
    void RefusesAStreamThatEndsTooEarly();
    void StopsWhereItEnds();
    void RefusesToWriteOtherThanNine_data();
    void RefusesToWriteOtherThanNine();
    void SaysWhenItCannotBeWritten();
};

void TestSelectiveParamsList::HoldsNineZeroEntriesAtFirst()
{
    const SelectiveParamsList list;
    QCOMPARE(list.targets.size(), 9);
    for (const SelectiveParams& params : list.targets) {
        QCOMPARE(params.cyan, 0.0f);
        QCOMPARE(params.magenta, 0.0f);
        QCOMPARE(params.yellow, 0.0f);
        QCOMPARE(params.black, 0.0f);
    }
    QCOMPARE(int(list.mode), 0);
}

void TestSelectiveParamsList::ComparesEveryField()
{
    const SelectiveParamsList list = Counted();
    QVERIFY(list == Counted());
    QVERIFY(!(list != Counted()));
    for (const auto field : {&SelectiveParams::cyan, &SelectiveParams::magenta, &SelectiveParams::yellow,
                             &SelectiveParams::black}) {
        SelectiveParamsList other = Counted();
        other.targets[8].*field += 1.0f;
        QVERIFY(list != other);
        QVERIFY(!(list == other));
        QVERIFY(list.targets[8] != other.targets[8]);
    }
    SelectiveParamsList other = Counted();
    other.mode = SelectiveParamsList::Relative;
    QVERIFY(list != other);
    other = Counted();
    other.targets.removeLast();
    QVERIFY(list != other);
}

void TestSelectiveParamsList::IsWrittenAsTagCountValuesAndMode()
{
    SelectiveParamsList list;
    list.targets[0].magenta = 1.0f;
    list.targets[8].black = -2.0f;
    list.mode = SelectiveParamsList::Absolute;
    const QByteArray bytes = Written(list);
    QCOMPARE(bytes.size(), Length);
    QCOMPARE(bytes.left(TagLength), Tag);
    QCOMPARE(bytes.mid(TagLength, CountLength).toHex(), QByteArray("00000009"));
    const QByteArray first = bytes.mid(TagLength + CountLength, 4 * ValueLength);
    QCOMPARE(first.toHex(), QByteArray("0000000000000000"
                                       "3ff0000000000000"
                                       "0000000000000000"
                                       "0000000000000000"));
    QCOMPARE(bytes.right(ModeLength + ValueLength).toHex(), QByteArray("c00000000000000000000001"));
}

void TestSelectiveParamsList::ComesBackAsItWasWritten_data()
{
    QTest::addColumn<int>("precision");
    QTest::newRow("double precision") << int(QDataStream::DoublePrecision);
    QTest::newRow("single precision") << int(QDataStream::SinglePrecision);
}

void TestSelectiveParamsList::ComesBackAsItWasWritten()
{
    QFETCH(int, precision);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setFloatingPointPrecision(QDataStream::FloatingPointPrecision(precision));
    QVERIFY(Counted().Write(out));
    QDataStream in(bytes);
    in.setFloatingPointPrecision(QDataStream::FloatingPointPrecision(precision));
    SelectiveParamsList list;
    QVERIFY(list.Read(in));
    QVERIFY(list == Counted());
    QVERIFY(in.atEnd());
}

void TestSelectiveParamsList::ValuesAreKeptAsRead()
{
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    SelectiveParamsList list;
    list.targets[0] = {std::numeric_limits<float>::quiet_NaN(), -Infinity, 1e30f, 250.5f};
    list.mode = static_cast<Mode>(-7);
    SelectiveParamsList back;
    QVERIFY(Read(Written(list), back));
    QVERIFY(std::isnan(back.targets[0].cyan));
    QCOMPARE(back.targets[0].magenta, -Infinity);
    QCOMPARE(back.targets[0].yellow, 1e30f);
    QCOMPARE(back.targets[0].black, 250.5f);
    QCOMPARE(int(back.mode), -7);
}

void TestSelectiveParamsList::RefusesOtherStreams_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QByteArray other = Written(Counted());
    other[TagLength - 1] = '1';
    QTest::newRow("another version") << other;
    QTest::newRow("another adjustment") << "KVCurves 1.00000" + QByteArray(400, '\0');
    QTest::newRow("no ranges") << WithCount(0);
    QTest::newRow("eight ranges") << WithCount(8);
    QTest::newRow("ten ranges") << WithCount(10) + QByteArray(100, '\0');
    QTest::newRow("more ranges than there is memory") << WithCount(0x0fffffffu);
    QTest::newRow("a count that is negative as a whole number") << WithCount(0xffffffffu);
}

void TestSelectiveParamsList::RefusesOtherStreams()
{
    QFETCH(QByteArray, bytes);
    SelectiveParamsList list = Counted();
    QVERIFY(!Read(bytes, list));
    QVERIFY(list == Counted());
}

void TestSelectiveParamsList::RefusesAStreamThatEndsTooEarly()
{
    const QByteArray bytes = Written(SelectiveParamsList());
    for (int length = 0; length < Length; ++length) {
        SelectiveParamsList list = Counted();
        QVERIFY2(!Read(bytes.left(length), list), qPrintable(QString::number(length)));
        QVERIFY(list == Counted());
    }
}

void TestSelectiveParamsList::StopsWhereItEnds()
{
    QDataStream stream(Written(Counted()) + "next");
    SelectiveParamsList list;
    QVERIFY(list.Read(stream));
    QCOMPARE(stream.device()->readAll(), QByteArray("next"));
}

void TestSelectiveParamsList::RefusesToWriteOtherThanNine_data()
{
    QTest::addColumn<int>("count");
    for (const int count : {0, 8, 10})
        QTest::addRow("%d", count) << count;
}

void TestSelectiveParamsList::RefusesToWriteOtherThanNine()
{
    QFETCH(int, count);
    SelectiveParamsList list;
    list.targets.clear();
    for (int i = 0; i < count; ++i)
        list.targets.append(SelectiveParams());
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    QVERIFY(!list.Write(stream));
    QCOMPARE(bytes, QByteArray());
}

void TestSelectiveParamsList::SaysWhenItCannotBeWritten()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QDataStream stream(&buffer);
    QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (QBuffer): ReadOnly device");
    QVERIFY(!SelectiveParamsList().Write(stream));
}

QTEST_GUILESS_MAIN(TestSelectiveParamsList)
#include "tst_SelectiveParamsList.moc"
