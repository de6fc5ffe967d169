#include "KVSelectiveColorsWidget.h"
#include "LoggedMessages.h"
#include "PanelKit.h"
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
#include "operations/Sign.h"
#include "operations/Temperature.h"
#include "operations/Threshold.h"
#include "operations/Tint.h"
#include "operations/Watermark.h"
#include "operations/WhiteBalance.h"

#include <QFont>
#include <QTest>
#include <QtEndian>

#include <vector>

namespace {

using PanelKit::Bytes;
using PanelKit::Written;

/// What becomes of bytes that are read into a record which holds a sample.
struct Reading
{
    bool isRead;        ///< what Read() answers
    bool isUntouched;   ///< by Read()
    qint64 position;    ///< where Read() leaves the stream
    bool isDefault;     ///< by the stream operator
    QByteArray written; ///< what the operator read, written again
};

/// A kind of record: how it is stored, and what its failures are called in the log.
struct Kind
{
    const char* name;
    const char* tag;
    const char* source;
    const char* message; ///< behind "Read " or "Write "
    QString readLine;
    QString writeLine;
    QByteArray defaults; ///< the whole stream of a record as it is made
    QByteArray sample;   ///< and of one that differs in every field
    int tagEnd;          ///< how far a stream is read whose tag is another
    Reading (*read)(const QByteArray& bytes, const QByteArray& sample);
    QByteArray (*writtenDefaults)();
    bool (*writeTo)(QDataStream& stream); ///< the defaults, by Write() and by the operator
};

template <class Params>
bool AreSame(const Params& a, const Params& b)
{
    return YDRecord::Equal(a, b);
}
bool AreSame(const operations::Levels& a, const operations::Levels& b)
{
    return YDRecord::Equal(a, b) && a.middle == b.middle; // what follows from the fields too
}
bool AreSame(const SelectiveParamsList& a, const SelectiveParamsList& b) { return a == b; }

template <class Params>
Reading ReadInto(const QByteArray& bytes, const QByteArray& sample)
{
    Params before;
    QDataStream whole(sample);
    if (!before.Read(whole))
        qFatal("The sample cannot be read.");
    Params params = before;
    QDataStream stream(bytes);
    const bool isRead = params.Read(stream);
    Params extracted = before;
    QDataStream again(bytes);
    again >> extracted;
    return {isRead, AreSame(params, before), stream.device()->pos(), AreSame(extracted, Params()),
            Written(extracted)};
}

template <class Params>
QByteArray WrittenDefaults()
{
    return Written(Params());
}

template <class Params>
bool WriteTo(QDataStream& stream)
{
    const bool isWritten = Params().Write(stream);
    stream << Params();
    return isWritten;
}

/// Lines are those of the log's format; 0 where any number may stand.
template <class Params>
Kind KindOf(const char* name, const char* tag, const char* source, const char* message, int writeLine,
            int readLine, const QByteArray& defaults, const QByteArray& sample)
{
    const auto line = [](int number) {
        return number == 0 ? QStringLiteral("[0-9]+") : QString::number(number);
    };
    return {name,
            tag,
            source,
            message,
            line(readLine),
            line(writeLine),
            tag + defaults,
            tag + sample,
            int(Params::Tag.size()),
            ReadInto<Params>,
            WrittenDefaults<Params>,
            WriteTo<Params>};
}

QByteArray Numbers(std::initializer_list<qint32> numbers) { return Bytes("", numbers); }

QByteArray Fractions(const std::vector<double>& fractions)
{
    QByteArray bytes(int(sizeof(double) * fractions.size()), '\0');
    for (std::size_t i = 0; i < fractions.size(); ++i)
        qToBigEndian(fractions[i], bytes.data() + sizeof(double) * i);
    return bytes;
}

/// An opaque colour of 8 bits a channel.
QByteArray Color(const char* rgb)
{
    QByteArray doubled;
    for (const char channel : QByteArray::fromHex(rgb))
        doubled += QByteArray(2, channel);
    return QByteArray::fromHex("01ffff") + doubled + QByteArray(2, '\0');
}

QByteArray Text(const QString& text)
{
    QByteArray bytes = Numbers({2 * text.size()});
    for (const QChar letter : text)
        bytes.append(char(letter.row())).append(char(letter.cell()));
    return bytes;
}

QByteArray Font(const QFont& font)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << font;
    return bytes;
}

QByteArray SampleInks()
{
    std::vector<double> inks;
    for (int range = 0; range < 9; ++range)
        inks.insert(inks.end(), {10.0 * range + 1, -10.0 * range - 2, 5.0 * range + 3, -5.0 * range - 4});
    return Numbers({9}) + Fractions(inks) + Numbers({1});
}

std::vector<Kind> TonalKinds()
{
    using namespace operations;
    const QByteArray ends = Numbers({0, 255, 0, 255, 0, 255, 0, 255});
    const QByteArray straight = Numbers({2, 0, 0, 255, 255});
    return {
        KindOf<BrightnessContrast>("brightness-contrast", "KVBrightnessContrast 1.00000",
                                   "src/YDBrightnessContrastWidget", "brightness and contrast", 0, 0,
                                   Numbers({0, 0}), Numbers({30, -10})),
        KindOf<Levels>(
            "levels", "KVLevels 1.00000", "src/YDLevelsWidget", "levels", 774, 787,
            Numbers({0}) + ends + ends + Fractions({1, 1, 1, 1}),
            Numbers({2, 1, 250, 2, 240, 3, 230, 4, 220, 5, 210, 6, 200, 190, 7, 8, 180}) +
                QByteArray::fromHex("3ff000000000000040000000000000003fe00000000000004022000000000000")),
        KindOf<Curves>("curves", "KVCurves 1.00000", "src/YDCurvesWidget", "curves", 1613, 1626,
                       Numbers({0}) + straight + straight + straight + straight,
                       Numbers({3, 2, 1, 2, -3, 256, 0, 1, 7, 8, 3, 0, 0, 4, 5, 255, 255})),
        KindOf<Threshold>("threshold", "KVThreshold 1.00000", "src/YDThresholdWidget", "threshold", 298, 311,
                          Numbers({128}), Numbers({30})),
    };
}

std::vector<Kind> ColorKinds()
{
    using namespace operations;
    const auto blackAndWhite = [](const char* name, const char* tag) {
        return KindOf<BlackAndWhite>(name, tag, "src/YDBlackAndWhiteWidget", "BlackAndWhite", 0, 0,
                                     Numbers({0}) + Fractions({0.333F, 0.333F, 0.333F}),
                                     Numbers({4}) + QByteArray::fromHex("3fe0000000000000"
                                                                        "3fd0000000000000"
                                                                        "3ff0000000000000"));
    };
    const QByteArray off(1, '\0');
    const QByteArray on(1, '\1');
    return {
        KindOf<HueSaturation>("hue-saturation", "KVHueSaturation 1.00000", "src/YDHueSaturationWidget",
                              "hue and saturation", 0, 0, Numbers({0, 0, 0, 0}), Numbers({300, -40, 20, 1})),
        KindOf<ColorBalance>("color-balance", "KVColorBalance 1.00000", "src/YDColorBalanceWidget",
                             "color balance", 0, 0, Numbers({1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0}),
                             Numbers({0, 3, 11, 12, 13, -21, -22, -23, 31, 32, 33})),
        blackAndWhite("black-and-white", "KVBlackAndWhite 1.00000"),
        blackAndWhite("black-and-white under its older tag", "KVDesaturate 1.00000"),
        KindOf<Colorize>("colorize", "KVColorizeFilter 1.00000", "src/YDColorizeWidget", "colorize", 309, 322,
                         Color("ffd2ff") + Numbers({25}), Color("0a14c8") + Numbers({70})),
        KindOf<PhotoFilter>("photo-filter", "KVPhotoFilter 1.00000", "src/YDPhotoFilterWidget",
                            "photo filter", 0, 0, Color("ebb113") + Numbers({50}),
                            Color("ff0000") + Numbers({70})),
        KindOf<Tint>("tint", "KVTint 1.00000", "src/YDTintWidget", "tint", 0, 0,
                     Color("050608") + Color("aad1ff") + Numbers({75, 0}),
                     Color("c80a14") + Color("0a14c8") + Numbers({40, 2})),
        KindOf<Temperature>("temperature", "KVTemperature 1.00000", "src/YDTemperatureWidget", "temperature",
                            0, 0, Numbers({6500, 0, 50}), Numbers({3000, -20, 80})),
        KindOf<WhiteBalance>("white-balance", "KVWhiteBalance 1.00000", "src/YDWBWidget", "WB", 0, 0,
                             off + Numbers({50, 100, 100, 0}) + off + Numbers({0, 50}),
                             on + Numbers({30, 60, 90, 2}) + on + Numbers({-7, 8})),
        KindOf<ColorEnhancer>("color-enhancer", "KVColorEnhancer 1.00000", "src/YDColorEnhancerWidget",
                              "color enhancer", 0, 0, Numbers({100, 100}), Numbers({60, 30})),
    };
}

std::vector<Kind> OtherKinds()
{
    using namespace operations;
    const QByteArray fives = Numbers({5, 5, 5, 5});
    const QByteArray margins = Numbers({1, 22, 333, 999});
    const QFont missing(QStringLiteral("No Such Family"), 40);
    return {
        KindOf<ReplaceColor>("replace-color", "KVReplaceColor 1.00000", "src/YDReplaceColorWidget", "sign",
                             397, 410, Numbers({0, 0}) + Color("ffffff") + Numbers({100}),
                             Numbers({3, 2}) + Color("0a14c8") + Numbers({70})),
        KindOf<FillColor>("fill-color", "KVFillColor 1.00000", "src/KVFillColorWidget", "colorize", 295, 308,
                          Color("000000") + Numbers({100}), Color("0a14c8") + Numbers({70})),
        KindOf<SelectiveParamsList>("selective-colors", "KVSelectiveColors 1.00000",
                                    "src/KVSelectiveColorsWidget", "selective colors", 307, 320,
                                    Numbers({9}) + Fractions(std::vector<double>(36)) + Numbers({0}),
                                    SampleInks()),
        KindOf<Sign>("sign", "KVSign 1.00000", "src/YDSignWidget", "sign", 526, 539,
                     Numbers({0x21}) + fives + Numbers({-1, 0, 100}), // -1: no text at all
                     Numbers({0x42}) + margins + Text(QStringLiteral("/stamps/seal.png")) +
                         Numbers({13, 40})),
        KindOf<Watermark>("watermark", "KVWatermark 1.00000", "src/YDWatermarkWidget", "watermark", 522, 535,
                          Numbers({0}) + fives + Text(QStringLiteral("Watermark")) + Font(QFont()) +
                              Color("ffffff") + Numbers({0, 100, 1, 1}),
                          Numbers({-35}) + margins + Text(QStringLiteral("\u00a9 me")) + Font(missing) +
                              Color("0a141e") + Numbers({22, 40, 3, 4})),
    };
}

const std::vector<Kind>& Kinds()
{
    static const std::vector<Kind> all = [] {
        std::vector<Kind> kinds = TonalKinds();
        for (const auto& more : {ColorKinds(), OtherKinds()})
            kinds.insert(kinds.end(), more.begin(), more.end());
        return kinds;
    }();
    return all;
}

/// One line of the log, such as "[src/YDTintWidget:5] Read tint data error.".
void CompareLine(const QStringList& logged, const Kind& kind, const char* verb, const QString& line)
{
    QCOMPARE(logged.size(), 1);
    const QRegularExpression expected(
        QStringLiteral("^\\[%1:%2\\] %3 %4 data error\\.$")
            .arg(QLatin1String(kind.source), line, QLatin1String(verb), QLatin1String(kind.message)));
    QVERIFY2(expected.match(logged.first()).hasMatch(), qPrintable(logged.first()));
}

} // namespace

/// How every record is stored, read and refused.
class TestRecordStreams : public QObject
{
    Q_OBJECT

private slots:
    void TheStreamIsTheTagAndTheFields_data() { AddKinds(); }
    void TheStreamIsTheTagAndTheFields();
    void WhatFollowsTheRecordIsLeftAlone_data() { AddKinds(); }
    void WhatFollowsTheRecordIsLeftAlone();
    void ACutStreamGivesDefaultsAndOneLine_data();
    void ACutStreamGivesDefaultsAndOneLine();
    void AnotherTagIsRefusedAndLeavesTheRecord_data();
    void AnotherTagIsRefusedAndLeavesTheRecord();
    void AReadOnlyStreamLogsTheFailedWrite_data() { AddKinds(); }
    void AReadOnlyStreamLogsTheFailedWrite();

private:
    static void AddKinds();
    static void AddPlaces(int (*countOf)(const Kind& kind), const char* format);
    static const Kind& TheKind()
    {
        QFETCH(int, kind);
        return Kinds()[std::size_t(kind)];
    }
};

void TestRecordStreams::AddKinds()
{
    QTest::addColumn<int>("kind");
    for (std::size_t i = 0; i < Kinds().size(); ++i)
        QTest::newRow(Kinds()[i].name) << int(i);
}

void TestRecordStreams::AddPlaces(int (*countOf)(const Kind& kind), const char* format)
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("place");
    for (std::size_t i = 0; i < Kinds().size(); ++i)
        for (int place = 0; place < countOf(Kinds()[i]); ++place)
            QTest::addRow(format, Kinds()[i].name, place) << int(i) << place;
}

void TestRecordStreams::TheStreamIsTheTagAndTheFields()
{
    const Kind& kind = TheKind();
    const QByteArray stored = QByteArray(kind.sample).replace("KVDesaturate", "KVBlackAndWhite");
    QCOMPARE(kind.writtenDefaults(), QByteArray(kind.defaults).replace("KVDesaturate", "KVBlackAndWhite"));
    const Reading reading = kind.read(kind.sample, kind.defaults);
    QVERIFY(reading.isRead);
    QVERIFY(!reading.isUntouched && !reading.isDefault);
    QCOMPARE(reading.position, qint64(kind.sample.size()));
    QCOMPARE(reading.written, stored); // under today's tag
}

void TestRecordStreams::WhatFollowsTheRecordIsLeftAlone()
{
    const Kind& kind = TheKind();
    const Reading reading = kind.read(kind.sample + 'x', kind.defaults);
    QVERIFY(reading.isRead);
    QCOMPARE(reading.position, qint64(kind.sample.size()));
}

void TestRecordStreams::ACutStreamGivesDefaultsAndOneLine_data()
{
    AddPlaces([](const Kind& kind) { return kind.sample.size(); }, "%s, %d bytes");
}

void TestRecordStreams::ACutStreamGivesDefaultsAndOneLine()
{
    QFETCH(int, place);
    const Kind& kind = TheKind();
    const LoggedMessages logged(QtDebugMsg);
    const Reading reading = kind.read(kind.sample.left(place), kind.sample);
    QVERIFY(!reading.isRead);
    QVERIFY(reading.isDefault);
    QVERIFY(reading.isUntouched || place >= int(qstrlen(kind.tag)));
    CompareLine(logged.All(), kind, "Read", kind.readLine);
}

void TestRecordStreams::AnotherTagIsRefusedAndLeavesTheRecord_data()
{
    AddPlaces([](const Kind& kind) { return int(qstrlen(kind.tag)); }, "%s, byte %d");
}

/// Every byte counts, those of the version too.
void TestRecordStreams::AnotherTagIsRefusedAndLeavesTheRecord()
{
    QFETCH(int, place);
    const Kind& kind = TheKind();
    QByteArray bytes = kind.sample;
    bytes[place] = char(bytes.at(place) ^ 1);
    const LoggedMessages logged(QtDebugMsg);
    const Reading reading = kind.read(bytes, kind.sample);
    QVERIFY(!reading.isRead);
    QVERIFY(reading.isUntouched);
    QCOMPARE(reading.position, qint64(kind.tagEnd));
    QVERIFY(reading.isDefault);
    CompareLine(logged.All(), kind, "Read", kind.readLine);
}

void TestRecordStreams::AReadOnlyStreamLogsTheFailedWrite()
{
    const Kind& kind = TheKind();
    const LoggedMessages logged(QtDebugMsg);
    QDataStream stream(QByteArray(100, 'x'));
    QVERIFY(!kind.writeTo(stream));
    CompareLine(logged.All(), kind, "Write", kind.writeLine);
}

QTEST_MAIN(TestRecordStreams)
#include "tst_RecordStreams.moc"
