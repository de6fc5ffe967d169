#include "YDRecord.h"

#include <QBuffer>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

QStringList& LoggedLines()
{
    static QStringList lines;
    return lines;
}

void CatchLog(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtDebugMsg)
        LoggedLines().append(message);
}

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
    return YDRecord::Insert(stream, sample, {"src/Sample", 42, "Write sample data error."});
}

QDataStream& operator>>(QDataStream& stream, Sample& sample)
{
    return YDRecord::Extract(stream, sample, {"src/Sample", 43, "Read sample data error."});
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
    void cleanupTestCase();

    void TheTagHasNoLengthAndTheFieldsFollowInOrder();
    void WhatIsWrittenIsRead();
    void ACutStreamGivesDefaultsAndOneLine();
    void AnotherTagIsRefusedWithoutTouchingTheRecord_data();
    void AnotherTagIsRefusedWithoutTouchingTheRecord();
    void AReadOnlyStreamCannotBeWrittenTo();
    void AFullDeviceFailsTheWrite();
    void RecordsAreEqualWhenAllFieldsAre();
};

void TestYDRecord::init()
{
    LoggedLines().clear();
    qInstallMessageHandler(CatchLog);
}

void TestYDRecord::cleanupTestCase() { qInstallMessageHandler(nullptr); }

void TestYDRecord::TheTagHasNoLengthAndTheFieldsFollowInOrder()
{
    QByteArray expected = "KVSample 1.00000";
    QDataStream stream(&expected, QIODevice::WriteOnly | QIODevice::Append);
    stream << qint32(-7) << 0.25 << false << QStringLiteral("text") << qint32(-1) << qint32(0) << qint32(99);
    QCOMPARE(Written(Other()), expected);
    QCOMPARE(Written(Other()).size(), 16 + 4 + 8 + 1 + 4 + 8 + 12);
    QVERIFY(LoggedLines().isEmpty());
}

void TestYDRecord::WhatIsWrittenIsRead()
{
    QDataStream stream(Written(Other()));
    Sample sample;
    QVERIFY(sample.Read(stream));
    QVERIFY(YDRecord::Equal(sample, Other()));
    QVERIFY(stream.atEnd());
}

void TestYDRecord::ACutStreamGivesDefaultsAndOneLine()
{
    const QByteArray whole = Written(Other());
    for (int length = 0; length < whole.size(); ++length) {
        LoggedLines().clear();
        QDataStream stream(whole.left(length));
        Sample sample = Other();
        stream >> sample;
        QVERIFY2(YDRecord::Equal(sample, Sample()), qPrintable(QString::number(length)));
        QCOMPARE(LoggedLines(), QStringList{QStringLiteral("[src/Sample:43] Read sample data error.")});
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
    const QByteArray fields = tag.size() == int(Sample::Tag.size()) ? Written(Sample()).mid(16) : QByteArray();
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
    QCOMPARE(LoggedLines(), QStringList{QStringLiteral("[src/Sample:42] Write sample data error.")});
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

QTEST_APPLESS_MAIN(TestYDRecord)
#include "tst_YDRecord.moc"
