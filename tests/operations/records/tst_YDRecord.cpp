#include "LoggedMessages.h"
#include "TestColors.h"
#include "YDRecord.h"
#include "operations/BlackAndWhite.h"
#include "operations/BrightnessContrast.h"
#include "operations/ColorBalance.h"
#include "operations/ColorEnhancer.h"
#include "operations/Colorize.h"
#include "operations/Curves.h"
#include "operations/FillColor.h"
#include "operations/HueSaturation.h"
#include "operations/Levels.h"
#include "operations/PhotoFilter.h"
#include "operations/ReplaceColor.h"
#include "operations/SelectiveColors.h"
#include "operations/Sign.h"
#include "operations/Temperature.h"
#include "operations/Threshold.h"
#include "operations/Tint.h"
#include "operations/Watermark.h"
#include "operations/WhiteBalance.h"

#include <QBuffer>
#include <QFont>
#include <QTest>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

constexpr YDRecordName SampleName{"src/Sample", "sample"};

/// A record with a field of each of the kinds that adjustments use.
struct Sample
{
    int whole = 3;
    double real = 0.5;
    bool choice = true;
    QString text = QStringLiteral("t");
    std::array<int, 3> list{{1, 2, 3}};

    static constexpr std::string_view Tag = "KVSample 1.00000";
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("whole", self.whole, YDRecord::Range{0, 10}) &&
               visit("real", self.real, YDRecord::Range{0, 1}) && visit("choice", self.choice) &&
               visit("text", self.text) && visit("list", self.list, YDRecord::Range{-100, 100});
    }
    bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

QDataStream& operator<<(QDataStream& stream, const Sample& sample)
{
    return YDRecord::Insert(stream, sample, SampleName, 42);
}

QDataStream& operator>>(QDataStream& stream, Sample& sample)
{
    return YDRecord::Extract(stream, sample, SampleName, 43);
}

Sample Other()
{
    Sample sample;
    sample.whole = -7;
    sample.real = 0.25;
    sample.choice = false;
    sample.text = QStringLiteral("text");
    sample.list = {{-1, 0, 99}};
    return sample;
}

QByteArray Written(const Sample& sample)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << sample;
    return bytes;
}

} // namespace

class TestYDRecord : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void TheTagHasNoLengthAndTheFieldsFollowInOrder();
    void WhatIsWrittenIsRead();
    void FlagsCanBeStoredAsNumbers();
    void AStoredNumberIsAFlag_data();
    void AStoredNumberIsAFlag();
    void ACutStreamGivesDefaultsAndOneLine();
    void AnotherTagIsRefusedWithoutTouchingTheRecord_data();
    void AnotherTagIsRefusedWithoutTouchingTheRecord();
    void AReadOnlyStreamCannotBeWrittenTo();
    void AFullDeviceFailsTheWrite();
    void RecordsAreEqualWhenAllFieldsAre();
    void PointListsAreACountAndPairs();
    void APointListThatIsThereIsReadWhateverItsLength();
    void ACountBeyondTheBytesThereAllocatesNothing_data();
    void ACountBeyondTheBytesThereAllocatesNothing();
    void OnASequentialDevicePointListsGrowAsTheyCome_data();
    void OnASequentialDevicePointListsGrowAsTheyCome();
    void APointListWithoutADeviceFails();
    void ListsNest();
    void ColoursAreAsQtStoresThem_data();
    void ColoursAreAsQtStoresThem();
    void AColourOfAnyModelIsKept();
    void ACutColourFails();
    void ColoursOfAnOldStreamAreRead();
    void FontsAreAsQtStoresThem_data();
    void FontsAreAsQtStoresThem();
    void AFamilyCountBeyondTheBytesThereAllocatesNothing_data();
    void AFamilyCountBeyondTheBytesThereAllocatesNothing();
    void ACutFontFails();
    void ReadingAFontLeavesTheStreamsVersion();
    void AnOlderTagIsTold_data();
    void AnOlderTagIsTold();
    void AnOlderTagLeavesTheStreamAtTheFields();
    void FailuresAreLoggedUnderTheirNames();

private:
    std::optional<LoggedMessages> m_logged;
};

void TestYDRecord::init() { m_logged.emplace(QtDebugMsg); }

void TestYDRecord::cleanup() { m_logged.reset(); }

void TestYDRecord::TheTagHasNoLengthAndTheFieldsFollowInOrder()
{
    QByteArray expected = "KVSample 1.00000";
    QDataStream stream(&expected, QIODevice::WriteOnly | QIODevice::Append);
    stream << qint32(-7) << 0.25 << false << QStringLiteral("text") << qint32(-1) << qint32(0) << qint32(99);
    QCOMPARE(Written(Other()), expected);
    QCOMPARE(Written(Other()).size(), 16 + 4 + 8 + 1 + 4 + 8 + 12);
    QVERIFY(m_logged->All().isEmpty());
}

void TestYDRecord::WhatIsWrittenIsRead()
{
    QDataStream stream(Written(Other()));
    Sample sample;
    QVERIFY(sample.Read(stream));
    QVERIFY(YDRecord::Equal(sample, Other()));
    QVERIFY(stream.atEnd());
}

void TestYDRecord::FlagsCanBeStoredAsNumbers()
{
    QByteArray expected = "KVSample 1.00000";
    QDataStream stream(&expected, QIODevice::WriteOnly | QIODevice::Append);
    stream << qint32(3) << 0.5 << qint32(1) << QStringLiteral("t") << qint32(1) << qint32(2) << qint32(3);
    QByteArray bytes;
    QDataStream target(&bytes, QIODevice::WriteOnly);
    QVERIFY(YDRecord::Write<YDRecord::FlagForm::Int>(target, Sample()));
    QCOMPARE(bytes, expected);
}

void TestYDRecord::AStoredNumberIsAFlag_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("flag");
    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << true;
    QTest::newRow("2") << 2 << true;
    QTest::newRow("256") << 256 << true; // no byte of it alone decides
    QTest::newRow("lowest") << std::numeric_limits<int>::min() << true;
}

void TestYDRecord::AStoredNumberIsAFlag()
{
    QFETCH(int, number);
    QFETCH(bool, flag);
    QByteArray bytes = "KVSample 1.00000";
    QDataStream target(&bytes, QIODevice::WriteOnly | QIODevice::Append);
    target << qint32(3) << 0.5 << qint32(number) << QStringLiteral("t") << qint32(1) << qint32(2)
           << qint32(3);
    Sample sample;
    sample.choice = !flag;
    QDataStream stream(bytes);
    QVERIFY(YDRecord::Read<YDRecord::FlagForm::Int>(stream, sample));
    QVERIFY(stream.atEnd());
    QCOMPARE(sample.choice, flag);
    QCOMPARE(sample.text, QStringLiteral("t"));
}

void TestYDRecord::ACutStreamGivesDefaultsAndOneLine()
{
    const QByteArray whole = Written(Other());
    for (int length = 0; length < whole.size(); ++length) {
        m_logged.emplace(QtDebugMsg);
        QDataStream stream(whole.left(length));
        Sample sample = Other();
        stream >> sample;
        QVERIFY2(YDRecord::Equal(sample, Sample()), qPrintable(QString::number(length)));
        QCOMPARE(m_logged->All(), QStringList{QStringLiteral("[src/Sample:43] Read sample data error.")});
    }
}

void TestYDRecord::AnotherTagIsRefusedWithoutTouchingTheRecord_data()
{
    QTest::addColumn<QByteArray>("tag");
    QTest::newRow("another version") << QByteArray("KVSample 1.00001");
    QTest::newRow("another name") << QByteArray("KVsample 1.00000");
    QTest::newRow("shorter") << QByteArray("KVSample 1.0000");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("with a zero in it") << QByteArray("KVSample\0001.00000", 16);
}

void TestYDRecord::AnotherTagIsRefusedWithoutTouchingTheRecord()
{
    QFETCH(QByteArray, tag);
    const QByteArray fields =
        tag.size() == int(Sample::Tag.size()) ? Written(Sample()).mid(16) : QByteArray();
    QDataStream stream(tag + fields);
    Sample sample = Other();
    QVERIFY(!sample.Read(stream));
    QVERIFY(YDRecord::Equal(sample, Other()));
}

void TestYDRecord::AReadOnlyStreamCannotBeWrittenTo()
{
    QDataStream stream(QByteArray(100, 'x'));
    QVERIFY(!Sample().Write(stream));
    stream << Sample();
    QCOMPARE(m_logged->All(), QStringList{QStringLiteral("[src/Sample:42] Write sample data error.")});
}

namespace {

/// Takes so many bytes and no more.
class SmallDevice : public QIODevice
{
public:
    explicit SmallDevice(qint64 room) : m_room(room) { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 length) override
    {
        const qint64 taken = std::min(length, m_room);
        m_room -= taken;
        return taken;
    }

private:
    qint64 m_room;
};

} // namespace

void TestYDRecord::AFullDeviceFailsTheWrite()
{
    const int size = Written(Sample()).size();
    for (int room = 0; room < size; ++room) {
        SmallDevice device(room);
        QDataStream stream(&device);
        QVERIFY2(!Sample().Write(stream), qPrintable(QString::number(room)));
    }
    SmallDevice device(size);
    QDataStream stream(&device);
    QVERIFY(Sample().Write(stream));
}

void TestYDRecord::RecordsAreEqualWhenAllFieldsAre()
{
    QVERIFY(YDRecord::Equal(Sample(), Sample()));
    Sample changed;
    changed.whole = 4;
    QVERIFY(!YDRecord::Equal(Sample(), changed));
    changed = Sample();
    changed.list[2] = 4;
    QVERIFY(!YDRecord::Equal(Sample(), changed));
    changed = Sample();
    changed.real = std::numeric_limits<double>::quiet_NaN();
    QVERIFY(!YDRecord::Equal(changed, changed));
}

void TestYDRecord::PointListsAreACountAndPairs()
{
    QByteArray bytes;
    QDataStream writer(&bytes, QIODevice::WriteOnly);
    const QVector<QPoint> points{QPoint(0, 255), QPoint(-1, 2)};
    YDRecord::WriteField(writer, points);
    QCOMPARE(bytes, QByteArray::fromHex("00000002"
                                        "00000000000000ff"
                                        "ffffffff00000002"));
    QDataStream reader(bytes);
    QVector<QPoint> read{QPoint(7, 7)};
    YDRecord::ReadField(reader, read);
    QCOMPARE(read, points);
    QCOMPARE(reader.status(), QDataStream::Ok);
    QVERIFY(reader.atEnd());
}

void TestYDRecord::APointListThatIsThereIsReadWhateverItsLength()
{
    for (const int length : {0, 1, 1000000}) {
        QVector<QPoint> points;
        for (int i = 0; i < length; ++i)
            points.append(QPoint(i, -i));
        QByteArray bytes;
        QDataStream writer(&bytes, QIODevice::WriteOnly);
        YDRecord::WriteField(writer, points);
        QDataStream reader(bytes);
        QVector<QPoint> read;
        YDRecord::ReadField(reader, read);
        QCOMPARE(reader.status(), QDataStream::Ok);
        QCOMPARE(read, points);
    }
}

namespace {

void AddCounts()
{
    QTest::addColumn<quint32>("count");
    QTest::addColumn<int>("bytes");
    QTest::newRow("one, nothing there") << quint32(1) << 0;
    QTest::newRow("two, a byte short") << quint32(2) << 15;
    QTest::newRow("eight megabytes") << quint32(0x00100000) << 70;
    QTest::newRow("just more than a container holds") << quint32(0x10000000) << 70;
    QTest::newRow("the highest int") << quint32(0x7fffffff) << 70;
    QTest::newRow("the lowest int") << quint32(0x80000000) << 70;
    QTest::newRow("the highest count") << quint32(0xffffffff) << 70;
}

QByteArray CountAndBytes(quint32 count, int bytes)
{
    QByteArray stored;
    QDataStream stream(&stored, QIODevice::WriteOnly);
    stream << count;
    return stored + QByteArray(bytes, '\1');
}

/// Gives its bytes a few at a time and does not tell how many there are.
class Pipe : public QIODevice
{
public:
    explicit Pipe(const QByteArray& bytes) : m_bytes(bytes) { open(QIODevice::ReadOnly); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 length) override
    {
        const int count = int(std::min(length, qint64(m_bytes.size())));
        std::copy_n(m_bytes.constData(), count, data);
        m_bytes.remove(0, count);
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_bytes;
};

} // namespace

void TestYDRecord::ACountBeyondTheBytesThereAllocatesNothing_data() { AddCounts(); }

void TestYDRecord::ACountBeyondTheBytesThereAllocatesNothing()
{
    QFETCH(quint32, count);
    QFETCH(int, bytes);
    QDataStream stream(CountAndBytes(count, bytes));
    QVector<QPoint> points;
    YDRecord::ReadField(stream, points);
    QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
    QCOMPARE(points.capacity(), 0);
}

void TestYDRecord::OnASequentialDevicePointListsGrowAsTheyCome_data()
{
    AddCounts();
    QTest::newRow("all there") << quint32(8) << 64;
}

void TestYDRecord::OnASequentialDevicePointListsGrowAsTheyCome()
{
    QFETCH(quint32, count);
    QFETCH(int, bytes);
    Pipe pipe(CountAndBytes(count, bytes));
    QDataStream stream(&pipe);
    QVector<QPoint> points;
    YDRecord::ReadField(stream, points);
    const bool isWhole = qint64(count) * 8 <= bytes;
    QCOMPARE(stream.status(), isWhole ? QDataStream::Ok : QDataStream::ReadPastEnd);
    QVERIFY(points.size() <= bytes / 8);
    QVERIFY(!isWhole || points == QVector<QPoint>(int(count), QPoint(0x01010101, 0x01010101)));
    QVERIFY(points.capacity() <= 64);
}

void TestYDRecord::APointListWithoutADeviceFails()
{
    QDataStream stream;
    QVector<QPoint> points;
    YDRecord::ReadField(stream, points);
    QVERIFY(stream.status() != QDataStream::Ok);
    QVERIFY(points.isEmpty());
}

void TestYDRecord::ListsNest()
{
    const std::array<std::array<int, 2>, 2> numbers{{{{1, 2}}, {{3, 4}}}};
    const std::array<QVector<QPoint>, 2> points{{{QPoint(5, 6)}, {}}};
    QByteArray bytes;
    QDataStream writer(&bytes, QIODevice::WriteOnly);
    YDRecord::WriteField(writer, numbers);
    YDRecord::WriteField(writer, points);
    QCOMPARE(bytes, QByteArray::fromHex("00000001000000020000000300000004"
                                        "000000010000000500000006"
                                        "00000000"));
    QDataStream reader(bytes);
    std::array<std::array<int, 2>, 2> readNumbers{};
    std::array<QVector<QPoint>, 2> readPoints;
    YDRecord::ReadField(reader, readNumbers);
    YDRecord::ReadField(reader, readPoints);
    QVERIFY(readNumbers == numbers);
    QVERIFY(readPoints == points);
    QVERIFY(reader.atEnd());
}

namespace {

constexpr std::string_view CurrentTag = "KVBlackAndWhite 1.00000";
constexpr std::string_view OlderTag = "KVDesaturate 1.00000";

} // namespace

Q_DECLARE_METATYPE(YDRecord::FoundTag)
Q_DECLARE_METATYPE(YDRecordName)

void TestYDRecord::ColoursAreAsQtStoresThem_data()
{
    QTest::addColumn<QColor>("color");
    QTest::newRow("opaque") << QColor(1, 2, 3);
    QTest::newRow("translucent") << QColor(1, 2, 3, 4);
    QTest::newRow("another model") << QColor::fromHsv(300, 20, 30);
    QTest::newRow("none") << QColor();
    QTest::newRow("beyond a screen's") << QColor::fromRgbF(2.0, -1.0, 0.5);
    QTest::newRow("no numbers") << TestColors::NoNumbers();
    QTest::newRow("no model there is") << TestColors::OfNoModel();
}

void TestYDRecord::ColoursAreAsQtStoresThem()
{
    QFETCH(QColor, color);
    QByteArray stored;
    QDataStream out(&stored, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    YDRecord::WriteField(out, color);
    YDRecord::WriteField(out, 77);
    QDataStream in(stored);
    in.setByteOrder(QDataStream::LittleEndian);
    QColor read;
    YDRecord::ReadField(in, read);
    QCOMPARE(TestColors::Stored(read), TestColors::Stored(color));
    int next = 0;
    YDRecord::ReadField(in, next);
    QCOMPARE(next, 77);
    QVERIFY(in.atEnd());
}

void TestYDRecord::AColourOfAnyModelIsKept()
{
    for (int model = -128; model <= 127; ++model) {
        const QByteArray stored = TestColors::Stored(model, {1, 2, 3, 4, 5});
        QDataStream stream(stored);
        QColor color(9, 9, 9);
        YDRecord::ReadField(stream, color);
        QCOMPARE(stream.status(), QDataStream::Ok);
        QVERIFY(stream.atEnd());
        const QColor copy = color;
        QByteArray written;
        QDataStream out(&written, QIODevice::WriteOnly);
        YDRecord::WriteField(out, copy);
        QCOMPARE(written, stored);
    }
}

void TestYDRecord::ACutColourFails()
{
    const QByteArray stored = TestColors::Stored(QColor(1, 2, 3));
    for (int length = 0; length < stored.size(); ++length) {
        QDataStream stream(stored.left(length));
        QColor color;
        YDRecord::ReadField(stream, color);
        QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
    }
}

void TestYDRecord::ColoursOfAnOldStreamAreRead()
{
    QByteArray stored;
    QDataStream out(&stored, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_3_3);
    YDRecord::WriteField(out, QColor(1, 2, 3));
    QCOMPARE(stored.size(), 4);
    QDataStream in(stored);
    in.setVersion(QDataStream::Qt_3_3);
    QColor color;
    YDRecord::ReadField(in, color);
    QCOMPARE(color, QColor(1, 2, 3));
}

namespace {

QFont SampleFont()
{
    QFont font(QStringLiteral("No Such Family"), 33, QFont::Bold, true);
    font.setFamilies({QStringLiteral("A"), QString(), QStringLiteral("B")});
    font.setStyleName(QStringLiteral("Condensed"));
    font.setLetterSpacing(QFont::AbsoluteSpacing, 3);
    font.setCapitalization(QFont::SmallCaps);
    font.setStretch(150);
    return font;
}

QByteArray Stored(const QFont& font, int version = QDataStream::Qt_5_15)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(version);
    stream << font;
    return bytes;
}

} // namespace

void TestYDRecord::FontsAreAsQtStoresThem_data()
{
    QTest::addColumn<int>("version");
    QTest::newRow("4.0") << int(QDataStream::Qt_4_0);
    QTest::newRow("5.4") << int(QDataStream::Qt_5_4);
    QTest::newRow("5.12, the last without families") << int(QDataStream::Qt_5_12);
    QTest::newRow("5.13, the first with families") << int(QDataStream::Qt_5_13);
    QTest::newRow("5.15") << int(QDataStream::Qt_5_15);
}

void TestYDRecord::FontsAreAsQtStoresThem()
{
    QFETCH(int, version);
    const QByteArray bytes = Stored(SampleFont(), version);
    QDataStream ours(bytes);
    QDataStream qts(bytes);
    ours.setVersion(version);
    qts.setVersion(version);
    QFont read;
    QFont expected;
    YDRecord::ReadField(ours, read);
    qts >> expected;
    QCOMPARE(read, expected);
    QCOMPARE(Stored(read), Stored(expected));
    QCOMPARE(ours.status(), QDataStream::Ok);
    QVERIFY(ours.atEnd());
}

void TestYDRecord::AFamilyCountBeyondTheBytesThereAllocatesNothing_data()
{
    QTest::addColumn<quint32>("count");
    QTest::newRow("one too many") << quint32(4);
    QTest::newRow("a million") << quint32(0x00100000);
    QTest::newRow("just more than a container holds") << quint32(0x10000000);
    QTest::newRow("the highest int") << quint32(0x7fffffff);
    QTest::newRow("the highest count") << quint32(0xffffffff);
}

void TestYDRecord::AFamilyCountBeyondTheBytesThereAllocatesNothing()
{
    QFETCH(quint32, count);
    QByteArray bytes = Stored(SampleFont());
    constexpr int BytesOfFamilies = 4 + 6 + 4 + 6;
    bytes.replace(bytes.size() - BytesOfFamilies, 4, CountAndBytes(count, 0));
    for (const bool isSequential : {false, true}) {
        QBuffer buffer(&bytes);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        Pipe pipe(bytes);
        QDataStream stream(isSequential ? static_cast<QIODevice*>(&pipe) : &buffer);
        QFont font;
        YDRecord::ReadField(stream, font);
        QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
        QVERIFY(font.families().size() <= 3);
    }
}

void TestYDRecord::ACutFontFails()
{
    const QByteArray whole = Stored(SampleFont());
    for (int length = 0; length < whole.size(); ++length) {
        QDataStream stream(whole.left(length));
        QFont font;
        YDRecord::ReadField(stream, font);
        QVERIFY2(stream.status() != QDataStream::Ok, qPrintable(QString::number(length)));
    }
}

void TestYDRecord::ReadingAFontLeavesTheStreamsVersion()
{
    for (const int version : {int(QDataStream::Qt_5_6), int(QDataStream::Qt_5_15)}) {
        QDataStream stream(Stored(SampleFont(), version));
        stream.setVersion(version);
        QFont font;
        YDRecord::ReadField(stream, font);
        QCOMPARE(stream.version(), version);
    }
}

void TestYDRecord::AnOlderTagIsTold_data()
{
    using YDRecord::FoundTag;
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<FoundTag>("expected");
    QTest::newRow("current") << QByteArray("KVBlackAndWhite 1.00000") << FoundTag::Current;
    QTest::newRow("older") << QByteArray("KVDesaturate 1.00000") << FoundTag::Older;
    QTest::newRow("older, fields behind it") << QByteArray("KVDesaturate 1.00000xyz") << FoundTag::Older;
    QTest::newRow("another version") << QByteArray("KVBlackAndWhite 1.00001") << FoundTag::None;
    QTest::newRow("another version of the older") << QByteArray("KVDesaturate 1.00001xyz") << FoundTag::None;
    QTest::newRow("neither") << QByteArray("KVColorBalance 1.0000000") << FoundTag::None;
    for (int length = 0; length < int(CurrentTag.size()); ++length)
        QTest::addRow("current, cut at %d", length)
            << QByteArray("KVBlackAndWhite 1.00000", length) << FoundTag::None;
    for (int length = 0; length < int(OlderTag.size()); ++length)
        QTest::addRow("older, cut at %d", length)
            << QByteArray("KVDesaturate 1.00000", length) << FoundTag::None;
}

void TestYDRecord::AnOlderTagIsTold()
{
    QFETCH(QByteArray, bytes);
    QFETCH(YDRecord::FoundTag, expected);
    QDataStream stream(bytes);
    QCOMPARE(YDRecord::ReadTag(stream, CurrentTag, OlderTag), expected);
}

void TestYDRecord::AnOlderTagLeavesTheStreamAtTheFields()
{
    for (const char* const tag : {"KVBlackAndWhite 1.00000", "KVDesaturate 1.00000"}) {
        QDataStream stream(QByteArray(tag) + QByteArray::fromHex("00000007"));
        QVERIFY(YDRecord::ReadTag(stream, CurrentTag, OlderTag) != YDRecord::FoundTag::None);
        int field = 0;
        stream >> field;
        QCOMPARE(field, 7);
    }
}

void TestYDRecord::FailuresAreLoggedUnderTheirNames()
{
    constexpr YDRecordName OfTheStatement{"src/YDTintWidget", "tint"};
    YDRecord::LogWriteFailure(OfTheStatement, 5);
    YDRecord::LogReadFailure(OfTheStatement, 6);
    constexpr YDRecordName OfItsOwn{"src/YDLevelsWidget", "levels", 774, 787};
    YDRecord::LogWriteFailure(OfItsOwn, 5);
    YDRecord::LogReadFailure(OfItsOwn, 6);
    QCOMPARE(m_logged->All(), QStringList({"[src/YDTintWidget:5] Write tint data error.",
                                           "[src/YDTintWidget:6] Read tint data error.",
                                           "[src/YDLevelsWidget:774] Write levels data error.",
                                           "[src/YDLevelsWidget:787] Read levels data error."}));
}

QTEST_APPLESS_MAIN(TestYDRecord)
#include "tst_YDRecord.moc"
