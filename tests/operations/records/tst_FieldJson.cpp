#include "FieldJson.h"
#include "TestColors.h"

#include <QDataStream>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <cmath>
#include <cstring>
#include <limits>

namespace {

using Ranges = std::array<std::array<int, 2>, 4>;
using Curves = std::array<QVector<QPoint>, 4>;

constexpr YDRecord::Range Levels{0, 255};

QJsonValue Json(const char* text) { return QJsonDocument::fromJson(text).array(); }

template <class Field>
QString Compact(const Field& field)
{
    return QString::fromUtf8(
        QJsonDocument(FieldJson::ToJson(field).toArray()).toJson(QJsonDocument::Compact));
}

} // namespace

/// Lists, points, rectangles, colours, fonts and single precision; other numbers and texts are tested through
/// the catalogue.
class TestFieldJson : public QObject
{
    Q_OBJECT

private slots:
    void NestedListsSurvive();
    void NestedListsThatDoNotFitAreRefused_data();
    void NestedListsThatDoNotFitAreRefused();
    void PointListsSurvive_data();
    void PointListsSurvive();
    void PointListsThatDoNotFitAreRefused_data();
    void PointListsThatDoNotFitAreRefused();
    void WithoutARangeAnyWholeNumberFits();
    void TellsRangesWithoutExponents();
    void ColoursSurvive_data();
    void ColoursSurvive();
    void AColourOfAnyComponentsIsWritten();
    void SinglePrecisionIsWrittenWithItsFewestDigits_data();
    void SinglePrecisionIsWrittenWithItsFewestDigits();
    void SinglePrecisionSurvives();
    void RectanglesAreTheirEdges_data();
    void RectanglesAreTheirEdges();
    void RectanglesThatDoNotFitAreRefused_data();
    void RectanglesThatDoNotFitAreRefused();
    void FontsSurvive_data();
    void FontsSurvive();
    void AFamilyAloneIsAFont();
    void TextsThatAreNoFontAreRefused_data();
    void TextsThatAreNoFontAreRefused();
    void AFontOfAnySizeIsWritten();
    void AlignmentsAreTheirFlags();
    void ListsAreTypedAsJson();
    void TypesHaveNames();
};

void TestFieldJson::NestedListsSurvive()
{
    const QJsonValue json = Json("[[0,255],[10,20],[255,0],[7,7]]");
    Ranges ranges{};
    QCOMPARE(FieldJson::FromJson(json, Levels, ranges), QString());
    QVERIFY((ranges == Ranges{{{{0, 255}}, {{10, 20}}, {{255, 0}}, {{7, 7}}}}));
    QCOMPARE(FieldJson::ToJson(ranges), json);
}

void TestFieldJson::NestedListsThatDoNotFitAreRefused_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("problem");
    QTest::newRow("no list") << QByteArray("{}") << "a list of 4 elements is expected";
    QTest::newRow("empty") << QByteArray("[]") << "a list of 4 elements is expected";
    QTest::newRow("too short") << QByteArray("[[0,1],[0,1],[0,1]]") << "a list of 4 elements is expected";
    QTest::newRow("too long") << QByteArray("[[0,1],[0,1],[0,1],[0,1],[0,1]]")
                              << "a list of 4 elements is expected";
    QTest::newRow("a number for a list")
        << QByteArray("[[0,1],1,[0,1],[0,1]]") << "[1]: a list of 2 elements is expected";
    QTest::newRow("too short within")
        << QByteArray("[[0,1],[0,1],[0],[0,1]]") << "[2]: a list of 2 elements is expected";
    QTest::newRow("too large") << QByteArray("[[0,1],[0,256],[0,1],[0,1]]")
                               << "[1][1]: 256 is outside 0..255";
    QTest::newRow("too small") << QByteArray("[[0,1],[0,1],[0,1],[-1,1]]") << "[3][0]: -1 is outside 0..255";
    QTest::newRow("a fraction") << QByteArray("[[0.5,1],[0,1],[0,1],[0,1]]")
                                << "[0][0]: a whole number is expected";
    QTest::newRow("a text") << QByteArray("[[\"x\",1],[0,1],[0,1],[0,1]]") << "[0][0]: a number is expected";
}

void TestFieldJson::NestedListsThatDoNotFitAreRefused()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, problem);
    const Ranges before{{{{1, 2}}, {{3, 4}}, {{5, 6}}, {{7, 8}}}};
    Ranges ranges = before;
    const QJsonDocument document = QJsonDocument::fromJson(json);
    const QJsonValue value =
        document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
    QCOMPARE(FieldJson::FromJson(value, Levels, ranges), problem);
    QVERIFY(ranges == before);
}

void TestFieldJson::PointListsSurvive_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("lines") << QByteArray("[[[0,0],[255,255]],[[0,0],[255,255]],[[0,0],[255,255]],[[1,2]]]");
    QTest::newRow("of several lengths") << QByteArray("[[[0,0],[9,8],[255,1]],[],[[5,5],[5,5]],[]]");
}

void TestFieldJson::PointListsSurvive()
{
    QFETCH(QByteArray, json);
    Curves curves;
    QCOMPARE(FieldJson::FromJson(Json(json), Levels, curves), QString());
    QCOMPARE(Compact(curves), QString::fromLatin1(json));
    QCOMPARE(Compact(curves[3]), Compact(QVector<QPoint>(curves[3])));
}

void TestFieldJson::PointListsThatDoNotFitAreRefused_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("problem");
    QTest::newRow("too few lists") << QByteArray("[[],[],[]]") << "a list of 4 elements is expected";
    QTest::newRow("a number for a list")
        << QByteArray("[[],3,[],[]]") << "[1]: a list of points [x, y] is expected";
    QTest::newRow("a number for a point")
        << QByteArray("[[[0,0],3],[],[],[]]") << "[0][1]: a point [x, y] is expected";
    QTest::newRow("three coordinates")
        << QByteArray("[[],[],[[1,2,3]],[]]") << "[2][0]: a point [x, y] is expected";
    QTest::newRow("one coordinate") << QByteArray("[[],[],[[1]],[]]") << "[2][0]: a point [x, y] is expected";
    QTest::newRow("too large") << QByteArray("[[[0,0],[256,0]],[],[],[]]")
                               << "[0][1][0]: 256 is outside 0..255";
    QTest::newRow("too small") << QByteArray("[[],[],[],[[0,-1]]]") << "[3][0][1]: -1 is outside 0..255";
    QTest::newRow("a fraction") << QByteArray("[[],[],[],[[0,1.5]]]")
                                << "[3][0][1]: a whole number is expected";
    QTest::newRow("nothing") << QByteArray("[[],[],[],[[0,null]]]") << "[3][0][1]: a number is expected";
}

void TestFieldJson::PointListsThatDoNotFitAreRefused()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, problem);
    const Curves before{{{QPoint(1, 2)}, {}, {}, {}}};
    Curves curves = before;
    QCOMPARE(FieldJson::FromJson(Json(json), Levels, curves), problem);
    QVERIFY(curves == before);
}

void TestFieldJson::WithoutARangeAnyWholeNumberFits()
{
    constexpr int Lowest = std::numeric_limits<int>::min();
    constexpr int Highest = std::numeric_limits<int>::max();
    QPoint point;
    QCOMPARE(FieldJson::FromJson(QJsonArray{Lowest, Highest}, std::nullopt, point), QString());
    QCOMPARE(point, QPoint(Lowest, Highest));
    QVERIFY(!FieldJson::FromJson(QJsonArray{Highest + 1.0, 0}, std::nullopt, point).isEmpty());
}

void TestFieldJson::TellsRangesWithoutExponents()
{
    double field = 3;
    const YDRecord::Range millions{-1e6, 1e6};
    QCOMPARE(FieldJson::FromJson(1000000.5, millions, field),
             QStringLiteral("1000000.5 is outside -1000000..1000000"));
    QCOMPARE(field, 3.0);
}

void TestFieldJson::ColoursSurvive_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QString>("text");
    QTest::newRow("opaque") << QColor(1, 2, 255) << "#0102ff";
    QTest::newRow("translucent") << QColor(1, 2, 255, 16) << "#100102ff";
    QTest::newRow("translucent by its alpha alone") << QColor(0, 0, 0, 254) << "#fe000000";
    QTest::newRow("invisible") << QColor(Qt::transparent) << "#00000000";
}

void TestFieldJson::ColoursSurvive()
{
    QFETCH(QColor, color);
    QFETCH(QString, text);
    QCOMPARE(FieldJson::ToJson(color), QJsonValue(text));
    QColor read;
    QCOMPARE(FieldJson::FromJson(text, std::nullopt, read), QString());
    QCOMPARE(read, color);
    for (const char* const wrong : {"", "red", "#123", "#12345g", "#123456789", "123456"}) {
        QVERIFY2(!FieldJson::FromJson(QString::fromLatin1(wrong), std::nullopt, read).isEmpty(), wrong);
        QCOMPARE(read, color);
    }
}

void TestFieldJson::AColourOfAnyComponentsIsWritten()
{
    QCOMPARE(FieldJson::ToJson(TestColors::NoNumbers()), QJsonValue(QStringLiteral("#00000000")));
    QCOMPARE(FieldJson::ToJson(TestColors::FarOut()), QJsonValue(QStringLiteral("#ff00ff")));
    QCOMPARE(FieldJson::ToJson(TestColors::OfNoModel()), QJsonValue(QStringLiteral("#80000000")));
}

void TestFieldJson::SinglePrecisionIsWrittenWithItsFewestDigits_data()
{
    QTest::addColumn<float>("number");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("few") << 0.333f << QByteArray("[0.333]");
    QTest::newRow("more than six") << 0.1234567f << QByteArray("[0.1234567]");
    QTest::newRow("eight") << 1.00000012f << QByteArray("[1.0000001]");
    QTest::newRow("whole") << -32.0f << QByteArray("[-32]");
    QTest::newRow("past six digits") << 16777216.0f << QByteArray("[16777216]");
}

void TestFieldJson::SinglePrecisionIsWrittenWithItsFewestDigits()
{
    QFETCH(float, number);
    QFETCH(QByteArray, json);
    QCOMPARE(QJsonDocument(QJsonArray{FieldJson::ToJson(number)}).toJson(QJsonDocument::Compact), json);
}

/// A sample of all finite ones: every 65521st pattern of bits.
void TestFieldJson::SinglePrecisionSurvives()
{
    for (quint64 bits = 1; bits <= std::numeric_limits<quint32>::max(); bits += 65521) {
        const auto pattern = static_cast<quint32>(bits);
        float number = 0;
        std::memcpy(&number, &pattern, sizeof number);
        if (!std::isfinite(number))
            continue;
        const QByteArray json = QJsonDocument(QJsonArray{FieldJson::ToJson(number)}).toJson();
        float back = 0;
        QCOMPARE(FieldJson::FromJson(QJsonDocument::fromJson(json).array().first(), {}, back), QString());
        QVERIFY2(back == number, json.constData());
    }
}

void TestFieldJson::RectanglesAreTheirEdges_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("margins") << QByteArray("[5,6,7,8]");
    QTest::newRow("left beyond right") << QByteArray("[900,800,3,0]");
    QTest::newRow("as far as numbers go") << QByteArray("[2147483647,-2147483648,-2147483648,2147483647]");
}

void TestFieldJson::RectanglesAreTheirEdges()
{
    QFETCH(QByteArray, json);
    QRect rect;
    QCOMPARE(FieldJson::FromJson(Json(json), std::nullopt, rect), QString());
    QCOMPARE(rect.left(), Json(json)[0].toInt());
    QCOMPARE(rect.top(), Json(json)[1].toInt());
    QCOMPARE(rect.right(), Json(json)[2].toInt());
    QCOMPARE(rect.bottom(), Json(json)[3].toInt());
    QCOMPARE(Compact(rect), QString::fromLatin1(json));
    QCOMPARE(FieldJson::FromText(QString::fromLatin1(json), &rect), Json(json));
}

void TestFieldJson::RectanglesThatDoNotFitAreRefused_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("problem");
    QTest::newRow("three edges") << QByteArray("[1,2,3]") << "a list of 4 elements is expected";
    QTest::newRow("five edges") << QByteArray("[1,2,3,4,5]") << "a list of 4 elements is expected";
    QTest::newRow("too large") << QByteArray("[1,2,3,256]") << "[3]: 256 is outside 0..255";
    QTest::newRow("too small") << QByteArray("[-1,2,3,4]") << "[0]: -1 is outside 0..255";
    QTest::newRow("a fraction") << QByteArray("[1,2.5,3,4]") << "[1]: a whole number is expected";
    QTest::newRow("a text") << QByteArray("[1,2,\"3\",4]") << "[2]: a number is expected";
}

void TestFieldJson::RectanglesThatDoNotFitAreRefused()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, problem);
    QRect rect(QPoint(9, 8), QPoint(7, 6));
    QCOMPARE(FieldJson::FromJson(Json(json), Levels, rect), problem);
    QCOMPARE(rect, QRect(QPoint(9, 8), QPoint(7, 6)));
}

void TestFieldJson::FontsSurvive_data()
{
    QTest::addColumn<QFont>("font");
    QFont decorated(QStringLiteral("No Such Family"), 24, QFont::Bold, true);
    decorated.setUnderline(true);
    decorated.setStrikeOut(true);
    QFont inPixels(QStringLiteral("F"));
    inPixels.setPixelSize(30);
    QFont styled(QStringLiteral("F"), 10);
    styled.setStyleName(QStringLiteral("Condensed"));
    QFont fractional(QStringLiteral("F"));
    fractional.setPointSizeF(10.5);
    QTest::newRow("plain") << QFont(QStringLiteral("F"), 12);
    QTest::newRow("decorated") << decorated;
    QTest::newRow("in pixels") << inPixels;
    QTest::newRow("with a style") << styled;
    QTest::newRow("a fraction of a point") << fractional;
}

void TestFieldJson::FontsSurvive()
{
    QFETCH(QFont, font);
    QFont read;
    QCOMPARE(FieldJson::FromJson(FieldJson::ToJson(font), std::nullopt, read), QString());
    QCOMPARE(read, font);
    QCOMPARE(FieldJson::FromText(font.toString(), &font), FieldJson::ToJson(font));
}

void TestFieldJson::AFamilyAloneIsAFont()
{
    QFont font;
    QCOMPARE(FieldJson::FromJson(QStringLiteral("DejaVu Sans"), std::nullopt, font), QString());
    QCOMPARE(font.family(), QStringLiteral("DejaVu Sans"));
    QCOMPARE(font.pointSizeF(), QFont().pointSizeF());
    QCOMPARE(FieldJson::FromJson(QStringLiteral("DejaVu Sans,36.5"), std::nullopt, font), QString());
    QCOMPARE(font.pointSizeF(), 36.5);
}

void TestFieldJson::TextsThatAreNoFontAreRefused_data()
{
    QTest::addColumn<QJsonValue>("json");
    QTest::newRow("nothing") << QJsonValue(QString());
    QTest::newRow("a number") << QJsonValue(12);
    QTest::newRow("a size alone") << QJsonValue(QStringLiteral(",12"));
    QTest::newRow("no size") << QJsonValue(QStringLiteral("F,"));
    QTest::newRow("size zero") << QJsonValue(QStringLiteral("F,0"));
    QTest::newRow("a negative size") << QJsonValue(QStringLiteral("F,-12"));
    QTest::newRow("in no pixels either") << QJsonValue(QStringLiteral("F,-1"));
    QTest::newRow("infinite") << QJsonValue(QStringLiteral("F,inf"));
    QTest::newRow("no number") << QJsonValue(QStringLiteral("F,nan"));
    QTest::newRow("a text for a size") << QJsonValue(QStringLiteral("F,large"));
    QTest::newRow("three parts") << QJsonValue(QStringLiteral("F,12,-1"));
    QTest::newRow("nine parts") << QJsonValue(QStringLiteral("F,12,-1,5,50,0,0,0,0"));
    QTest::newRow("twelve parts") << QJsonValue(QStringLiteral("F,12,-1,5,50,0,0,0,0,0,Bold,x"));
    QTest::newRow("a text for a weight") << QJsonValue(QStringLiteral("F,12,-1,5,bold,0,0,0,0,0"));
    QTest::newRow("a number too large") << QJsonValue(QStringLiteral("F,12,-1,5,99999999999,0,0,0,0,0"));
    QTest::newRow("size zero in pixels") << QJsonValue(QStringLiteral("F,-1,0,5,50,0,0,0,0,0"));
}

void TestFieldJson::TextsThatAreNoFontAreRefused()
{
    QFETCH(QJsonValue, json);
    QFont font(QStringLiteral("F"), 12);
    QCOMPARE(FieldJson::FromJson(json, std::nullopt, font),
             QStringLiteral("a font as \"family,points\" is expected"));
    QCOMPARE(font, QFont(QStringLiteral("F"), 12));
}

void TestFieldJson::AFontOfAnySizeIsWritten()
{
    for (const double points : {0.0, -3.0, 1e300, std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN()}) {
        QByteArray bytes;
        QDataStream writer(&bytes, QIODevice::WriteOnly);
        writer.setVersion(QDataStream::Qt_4_0);
        writer << QStringLiteral("F") << points << qint32(-1) << quint8(5) << quint8(1) << quint8(0)
               << quint8(50) << quint8(0);
        QDataStream reader(bytes);
        reader.setVersion(QDataStream::Qt_4_0);
        QFont font;
        reader >> font;
        QVERIFY(FieldJson::ToJson(font).toString().startsWith(QLatin1String("F,")));
    }
}

void TestFieldJson::AlignmentsAreTheirFlags()
{
    for (const int flags : {33, 0, 66, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        Qt::Alignment alignment;
        QCOMPARE(FieldJson::FromJson(flags, std::nullopt, alignment), QString());
        QCOMPARE(int(alignment), flags);
        QCOMPARE(FieldJson::ToJson(alignment), QJsonValue(flags));
        QCOMPARE(FieldJson::FromText(QString::number(flags), &alignment), QJsonValue(flags));
    }
    Qt::Alignment alignment = Qt::AlignRight;
    QVERIFY(!FieldJson::FromJson(2.5, std::nullopt, alignment).isEmpty());
    QVERIFY(!FieldJson::FromJson(QStringLiteral("right"), std::nullopt, alignment).isEmpty());
    QVERIFY(FieldJson::FromText(QStringLiteral("right"), &alignment).isUndefined());
    QCOMPARE(alignment, Qt::Alignment(Qt::AlignRight));
}

void TestFieldJson::ListsAreTypedAsJson()
{
    const QString text = QStringLiteral("[[1, 2], [3, 4]]");
    QCOMPARE(FieldJson::FromText(text, static_cast<const Ranges*>(nullptr)), Json("[[1,2],[3,4]]"));
    QCOMPARE(FieldJson::FromText(text, static_cast<const QVector<QPoint>*>(nullptr)), Json("[[1,2],[3,4]]"));
    for (const char* const wrong : {"", "1", "[1", "{}", "[1] 2"}) {
        const QString typed = QString::fromLatin1(wrong);
        QVERIFY2(FieldJson::FromText(typed, static_cast<const Ranges*>(nullptr)).isUndefined(), wrong);
        QVERIFY2(FieldJson::FromText(typed, static_cast<const Curves*>(nullptr)).isUndefined(), wrong);
    }
}

void TestFieldJson::TypesHaveNames()
{
    QCOMPARE(FieldJson::TypeName(static_cast<const Ranges*>(nullptr)), QStringLiteral("list"));
    QCOMPARE(FieldJson::TypeName(static_cast<const QVector<QPoint>*>(nullptr)),
             QStringLiteral("list of points"));
    QCOMPARE(FieldJson::TypeName(static_cast<const QColor*>(nullptr)), QStringLiteral("colour"));
    QCOMPARE(FieldJson::TypeName(static_cast<const QRect*>(nullptr)), QStringLiteral("list"));
    QCOMPARE(FieldJson::TypeName(static_cast<const QFont*>(nullptr)), QStringLiteral("font"));
    QCOMPARE(FieldJson::TypeName(static_cast<const Qt::Alignment*>(nullptr)), QStringLiteral("whole number"));
}

QTEST_APPLESS_MAIN(TestFieldJson)
#include "tst_FieldJson.moc"
