#include "MemoryLimit.h"
#include "TestFiles.h"
#include "operations/MaskOfShape.h"
#include "operations/Recipe.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <sys/stat.h>

using operations::Recipe;
using operations::RecipeSelection;

Q_DECLARE_METATYPE(const operations::Adjustment*)
Q_DECLARE_METATYPE(RecipeSelection::Kind)

namespace {

constexpr QSize Picture(60, 40);

Recipe::Step StepOf(const char* name, const QJsonObject& fields = {})
{
    const operations::Adjustment* const adjustment = operations::Catalog::Find(QString::fromLatin1(name));
    std::shared_ptr<operations::Settings> settings = adjustment->makeSettings();
    [&] { QCOMPARE(settings->FromJson(fields), QString()); }();
    return {*adjustment, settings};
}

/// A recipe of one step, which the texts of further keys belong to.
QByteArray WithStep(const QByteArray& keys)
{
    return R"({"adjustmentgui": 1, "steps": [{"adjustment": "levels")" + keys + "}]}";
}

QByteArray WithSelection(const QByteArray& selection) { return WithStep(R"(, "selection": )" + selection); }

/// A list of so many corners that goes to and fro.
QByteArray Corners(int count)
{
    QByteArray list = "[[0,0]";
    for (int i = 1; i < count; ++i)
        list += i % 2 == 0 ? ",[0,0]" : ",[9,9]";
    return list + ']';
}

/// A recipe of so many steps.
QByteArray WithSteps(int count)
{
    QByteArrayList steps;
    for (int i = 0; i < count; ++i)
        steps.append(R"({"adjustment":"tint"})");
    return R"({"adjustmentgui":1,"steps":[)" + steps.join(',') + "]}";
}

/// Another value of the same kind within the range.
QJsonValue Changed(const QJsonValue& value, const operations::SettingsField& field)
{
    if (value.isBool())
        return !value.toBool();
    if (value.isDouble()) {
        const auto range = field.range.value_or(YDRecord::Range{0, 8});
        const double between = std::floor(range.minimum + (range.maximum - range.minimum) / 4);
        return between >= range.minimum && between != value.toDouble() ? between : range.maximum;
    }
    if (value.isArray()) {
        QJsonArray list;
        for (const QJsonValue& element : value.toArray())
            list.append(Changed(element, field));
        return list;
    }
    if (field.typeName == QLatin1String("colour"))
        return QStringLiteral("#80102030");
    return field.typeName == QLatin1String("font") ? QStringLiteral("DejaVu Sans,48")
                                                   : QStringLiteral("a \"text\", \\ and \u00fc");
}

/// Coverage of a pixel of the picture; 0 outside the mask.
int At(const operations::Selection& selection, int x, int y)
{
    const QPoint place = QPoint(x, y) - selection.offset;
    if (!selection.bounds.contains(place))
        return 0;
    return selection.mask.Row(place.y())[place.x()].g;
}

QString NoMask(const QString&, operations::Selection&) { return QStringLiteral("no mask is expected"); }

} // namespace

class TestRecipe : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void ReadsWhatIsSaid();
    void WhatIsNotSaidIsTheDefault();
    void EveryAdjustmentComesBack_data();
    void EveryAdjustmentComesBack();
    void EverySelectionComesBack_data();
    void EverySelectionComesBack();
    void WritesAllFieldsALineForEachStep();
    void ACopyIsAValueOfItsOwn();
    void RefusesWhatIsWrong_data();
    void RefusesWhatIsWrong();
    void ARecipeCutAnywhereIsRefused();
    void TakesAsMuchAsTheLimitsAllow();
    void ShapesSelectTheirPixels_data();
    void ShapesSelectTheirPixels();
    void AShapeIsTheMaskOfThatShape();
    void AShapeThatMemoryHasNoRoomForIsTold();
    void FarOutShapesAreHarmless_data();
    void FarOutShapesAreHarmless();
    void AMaskFileIsReadByTheCaller();
    void FilesAreReadAndWritten();
    void OnlySmallRegularFilesAreRead();
    void WritesNothingThatCannotBeRead();

private:
    QString Path(const char* name) const { return m_folder->filePath(QString::fromLatin1(name)); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestRecipe::ReadsWhatIsSaid()
{
    const auto [recipe, error] = Recipe::FromJson(
        R"({"adjustmentgui": 1, "steps": [{"adjustment": "levels", "enabled": true,
            "settings": {"gamma": [1.25, 1, 1, 1]}, "selection": null},
            {"adjustment": "threshold", "enabled": false, "settings": {"level": 7},
             "selection": {"ellipse": [-1.5, 2, 30, 20], "feather": 9}}]})");
    QCOMPARE(error, QString());
    QCOMPARE(int(recipe.steps.size()), 2);
    const Recipe::Step& levels = recipe.steps.front();
    QCOMPARE(levels.adjustment, operations::Catalog::Find(QStringLiteral("levels")));
    QCOMPARE(levels.settings->ToJson().value("gamma").toArray(), (QJsonArray{1.25, 1, 1, 1}));
    QVERIFY(levels.enabled);
    QCOMPARE(levels.selection.kind, RecipeSelection::Kind::All);
    const Recipe::Step& threshold = recipe.steps.back();
    QCOMPARE(threshold.settings->ToJson(), (QJsonObject{{"level", 7}}));
    QVERIFY(!threshold.enabled);
    QCOMPARE(threshold.selection.kind, RecipeSelection::Kind::Ellipse);
    QVERIFY((threshold.selection.edges == std::array<double, 4>{-1.5, 2, 30, 20}));
    QCOMPARE(threshold.selection.feather, 9);
}

void TestRecipe::WhatIsNotSaidIsTheDefault()
{
    const auto [recipe, error] =
        Recipe::FromJson(R"({"steps": [{"adjustment": "tint"}], "adjustmentgui": 1})");
    QCOMPARE(error, QString());
    QCOMPARE(int(recipe.steps.size()), 1);
    QVERIFY(recipe.steps.front().enabled);
    QCOMPARE(recipe.steps.front().selection.kind, RecipeSelection::Kind::All);
    QCOMPARE(recipe.steps.front().settings->ToJson(), StepOf("tint").settings->ToJson());
    const auto [none, problem] = Recipe::FromJson(R"({"adjustmentgui": 1, "steps": []})");
    QCOMPARE(problem, QString());
    QVERIFY(none.steps.empty());
}

void TestRecipe::EveryAdjustmentComesBack_data()
{
    QTest::addColumn<const operations::Adjustment*>("adjustment");
    for (const operations::Adjustment& adjustment : operations::Catalog::All())
        QTest::newRow(qPrintable(adjustment.name)) << &adjustment;
}

void TestRecipe::EveryAdjustmentComesBack()
{
    QFETCH(const operations::Adjustment*, adjustment);
    const auto settings = adjustment->makeSettings();
    const QJsonObject defaults = settings->ToJson();
    Recipe recipe;
    recipe.steps.emplace_back(*adjustment, settings->Clone());
    const QVector<operations::SettingsField> fields = settings->Fields();
    for (const operations::SettingsField& field : fields) {
        const QJsonValue changed = Changed(field.defaultValue, field);
        if (changed == field.defaultValue)
            continue; // a list that is empty
        QCOMPARE(settings->FromJson({{field.name, changed}}), QString());
        QVERIFY2(settings->ToJson() != defaults, qPrintable(field.name));
        recipe.steps.emplace_back(*adjustment, settings->Clone());
    }
    QVERIFY(recipe.steps.size() > 1);
    const auto [again, error] = Recipe::FromJson(recipe.ToJson());
    QCOMPARE(error, QString());
    QCOMPARE(again.ToJson(), recipe.ToJson());
    QVERIFY(again == recipe);
    QCOMPARE(again.steps.back().settings->ToJson(), settings->ToJson());
}

void TestRecipe::EverySelectionComesBack_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<RecipeSelection::Kind>("kind");
    using Kind = RecipeSelection::Kind;
    QTest::newRow("none") << QByteArray("null") << Kind::All;
    QTest::newRow("a rectangle") << QByteArray(R"({"feather":0,"rectangle":[1,2,3,4]})") << Kind::Rectangle;
    QTest::newRow("fractions") << QByteArray(R"({"feather":500,"rectangle":[-0.1,0.2,0.3,1000000]})")
                               << Kind::Rectangle;
    QTest::newRow("an empty rectangle")
        << QByteArray(R"({"feather":0,"rectangle":[1,2,1,2]})") << Kind::Rectangle;
    QTest::newRow("an ellipse") << QByteArray(R"({"ellipse":[1,2,3,4],"feather":10})") << Kind::Ellipse;
    QTest::newRow("a polygon") << QByteArray(R"({"feather":3,"polygon":[[0,0],[9.5,0],[0,-9.25]]})")
                               << Kind::Polygon;
    QTest::newRow("a mask") << QByteArray(R"({"mask":"sky.png","offset":[3,-1000000]})") << Kind::MaskFile;
    QTest::newRow("a mask further down")
        << QByteArray(R"({"mask":"masks/..sky...png","offset":[0,0]})") << Kind::MaskFile;
}

void TestRecipe::EverySelectionComesBack()
{
    QFETCH(QByteArray, json);
    QFETCH(RecipeSelection::Kind, kind);
    const auto [recipe, error] = Recipe::FromJson(WithSelection(json));
    QCOMPARE(error, QString());
    QCOMPARE(recipe.steps.front().selection.kind, kind);
    const QByteArray written = recipe.ToJson();
    QVERIFY2(written.contains("\"selection\":" + json + ','), written.constData());
    QCOMPARE(Recipe::FromJson(written).recipe.ToJson(), written);
}

void TestRecipe::WritesAllFieldsALineForEachStep()
{
    QCOMPARE(Recipe().ToJson(), QByteArray("{\"adjustmentgui\": 1, \"steps\": [\n]}\n"));
    Recipe recipe;
    recipe.steps = {StepOf("brightness-contrast", {{"contrast", -3}}), StepOf("gamma")};
    recipe.steps.back().enabled = false;
    QCOMPARE(recipe.ToJson(),
             QByteArray("{\"adjustmentgui\": 1, \"steps\": [\n"
                        R"({"adjustment":"brightness-contrast","enabled":true,"selection":null,)"
                        R"("settings":{"brightness":0,"contrast":-3}},)"
                        "\n"
                        R"({"adjustment":"gamma","enabled":false,"selection":null,"settings":{"gamma":1}})"
                        "\n]}\n"));
}

void TestRecipe::ACopyIsAValueOfItsOwn()
{
    Recipe recipe;
    recipe.steps = {StepOf("gamma"), StepOf("tint")};
    Recipe copy = recipe;
    QVERIFY(copy == recipe);
    copy.steps.front() = StepOf("gamma", {{"gamma", 2}});
    QVERIFY(copy != recipe);
    QCOMPARE(recipe.steps.front().settings->ToJson().value("gamma").toDouble(), 1.0);
    copy = recipe;
    QVERIFY(copy == recipe);
    copy.steps.back().enabled = false;
    QVERIFY(copy != recipe);
    copy = recipe;
    std::swap(copy.steps.front(), copy.steps.back());
    QVERIFY(copy != recipe);
}

void TestRecipe::RefusesWhatIsWrong_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("error");
    const auto row = [](const char* name, const QByteArray& json, const char* error) {
        QTest::newRow(name) << json << QString::fromLatin1(error);
    };
    row("nothing", "", "the file is empty");
    row("a picture", "\x89PNG\r\n\x1a\n", "it is not JSON (byte 1: illegal value)");
    row("text that is not UTF-8", "{\"\xff\": 1}", "it is not JSON (byte 2: invalid UTF8 string)");
    row("more behind it", WithStep("") + "x", "it is not JSON (byte 57: garbage at the end of the document)");
    row("an infinite number", WithStep(R"(, "settings": {"gamma": [1e999, 1, 1, 1]})"),
        "it is not JSON (byte 84: illegal number)");
    row("a list", "[1]", "a recipe is expected, which is an object");
    row("no version", R"({"steps": []})", "the key \"adjustmentgui\" is missing");
    row("another version", R"({"adjustmentgui": 2, "stages": []})", "adjustmentgui: version 2 is not known");
    row("half a version", R"({"adjustmentgui": 1.5, "steps": []})",
        "adjustmentgui: a whole number is expected");
    row("a version in words", R"({"adjustmentgui": "1", "steps": []})",
        "adjustmentgui: a number is expected");
    row("an unknown key", R"({"adjustmentgui": 1, "steps": [], "stages": []})",
        "the key \"stages\" is not known here");
    row("no steps", R"({"adjustmentgui": 1})", "the key \"steps\" is missing");
    row("steps of another kind", R"({"adjustmentgui": 1, "steps": {}})", "steps: a list is expected");
    row("too many steps", WithSteps(Recipe::MaxSteps + 1), "steps: there are more than 1000");
    row("a step of another kind", R"({"adjustmentgui": 1, "steps": [1]})", "steps[0]: an object is expected");
    row("no adjustment", R"({"adjustmentgui": 1, "steps": [{"adjustment": "tint"}, {}]})",
        "steps[1]: the key \"adjustment\" is missing");
    row("an adjustment of another kind", R"({"adjustmentgui": 1, "steps": [{"adjustment": 1}]})",
        "steps[0].adjustment: a text is expected");
    row("an unknown adjustment", R"({"adjustmentgui": 1, "steps": [{"adjustment": "nonsense"}]})",
        "steps[0].adjustment: there is no adjustment \"nonsense\"");
    row("a step's unknown key", WithStep(R"(, "enabld": true)"),
        "steps[0]: the key \"enabld\" is not known here");
    row("neither on nor off", WithStep(R"(, "enabled": 1)"), "steps[0].enabled: true or false is expected");
    row("settings of another kind", WithStep(R"(, "settings": [])"),
        "steps[0].settings: an object is expected");
    row("null for settings", WithStep(R"(, "settings": null)"), "steps[0].settings: an object is expected");
    row("an unknown field", WithStep(R"(, "settings": {"gama": [1, 1, 1, 1]})"),
        "steps[0].settings: there is no field \"gama\"");
    row("a value outside its range", WithStep(R"(, "settings": {"gamma": [12, 1, 1, 1]})"),
        "steps[0].settings: gamma[0]: 12 is outside 0.01..9.99");
    row("a value of another kind", WithStep(R"(, "settings": {"gamma": 1})"),
        "steps[0].settings: gamma: a list of 4 elements is expected");
    row("a selection of another kind", WithSelection("[1, 2, 3, 4]"),
        "steps[0].selection: an object or null is expected");
    const char* const anyKind =
        "steps[0].selection: one of \"rectangle\", \"ellipse\", \"polygon\" and \"mask\" is expected";
    row("an empty selection", WithSelection("{}"), anyKind);
    row("only a feather", WithSelection(R"({"feather": 3})"), anyKind);
    row("two shapes", WithSelection(R"({"rectangle": [1, 2, 3, 4], "ellipse": [1, 2, 3, 4]})"), anyKind);
    row("an unknown shape", WithSelection(R"({"circle": [1, 2, 3]})"),
        "steps[0].selection: the key \"circle\" is not known here");
    row("a key that belongs to masks", WithSelection(R"({"rectangle": [1, 2, 3, 4], "offset": [1, 2]})"),
        "steps[0].selection: the key \"offset\" is not known here");
    row("a key that belongs to shapes", WithSelection(R"({"mask": "m.png", "feather": 1})"),
        "steps[0].selection: the key \"feather\" is not known here");
    row("three edges", WithSelection(R"({"rectangle": [1, 2, 3]})"),
        "steps[0].selection: rectangle: a list of 4 elements is expected");
    row("an edge in words", WithSelection(R"({"rectangle": [1, 2, 3, "4"]})"),
        "steps[0].selection: rectangle[3]: a number is expected");
    row("a far edge", WithSelection(R"({"ellipse": [1, 2, 3, 1e300]})"),
        "steps[0].selection: ellipse[3]: 1e+300 is outside -1000000..1000000");
    row("left beyond right", WithSelection(R"({"rectangle": [3, 2, 1, 4]})"),
        "steps[0].selection: rectangle: the edges left, top, right, bottom are expected in this order");
    row("top below bottom", WithSelection(R"({"ellipse": [1, 4.5, 3, 4]})"),
        "steps[0].selection: ellipse: the edges left, top, right, bottom are expected in this order");
    row("a polygon of another kind", WithSelection(R"({"polygon": 3})"),
        "steps[0].selection: polygon: a list of points [x, y] is expected");
    row("two corners", WithSelection(R"({"polygon": [[0, 0], [1, 1]]})"),
        "steps[0].selection: polygon: 2 points are outside 3..100000");
    row("too many corners", WithSelection("{\"polygon\": " + Corners(RecipeSelection::MaxCorners + 1) + '}'),
        "steps[0].selection: polygon: 100001 points are outside 3..100000");
    row("half a corner", WithSelection(R"({"polygon": [[0, 0], [1, 1], [2]]})"),
        "steps[0].selection: polygon[2]: a list of 2 elements is expected");
    row("a far corner", WithSelection(R"({"polygon": [[0, 0], [1, -1000001], [2, 2]]})"),
        "steps[0].selection: polygon[1][1]: -1000001 is outside -1000000..1000000");
    row("a large feather", WithSelection(R"({"ellipse": [1, 2, 3, 4], "feather": 501})"),
        "steps[0].selection: feather: 501 is outside 0..500");
    row("a negative feather", WithSelection(R"({"ellipse": [1, 2, 3, 4], "feather": -1})"),
        "steps[0].selection: feather: -1 is outside 0..500");
    row("half a feather", WithSelection(R"({"ellipse": [1, 2, 3, 4], "feather": 1.5})"),
        "steps[0].selection: feather: a whole number is expected");
    row("a mask of another kind", WithSelection(R"({"mask": 1})"),
        "steps[0].selection: mask: a text is expected");
    row("a mask without a name", WithSelection(R"({"mask": ""})"),
        "steps[0].selection: mask: the name of a file is expected");
    row("a mask with an end in its name", WithSelection(R"({"mask": "a\u0000b"})"),
        "steps[0].selection: mask: the name of a file is expected");
    for (const char* const path : {"/etc/mask.png", "../mask.png", "masks/../../mask.png", "..", "masks/.."})
        row(path, WithSelection(QByteArray(R"({"mask": ")") + path + "\"}"),
            "steps[0].selection: mask: a path from the recipe's folder is expected, without \"..\"");
    row("half an offset", WithSelection(R"({"mask": "m.png", "offset": [1]})"),
        "steps[0].selection: offset: a point [x, y] is expected");
    row("a fraction of an offset", WithSelection(R"({"mask": "m.png", "offset": [1, 0.5]})"),
        "steps[0].selection: offset[1]: a whole number is expected");
    row("a far offset", WithSelection(R"({"mask": "m.png", "offset": [2e9, 0]})"),
        "steps[0].selection: offset[0]: 2e+09 is outside -1000000..1000000");
    row("deep nesting", WithSelection(QByteArray(100'000, '[')),
        "it is not JSON (byte 1091: too deeply nested document)");
}

void TestRecipe::RefusesWhatIsWrong()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, error);
    const Recipe::Result result = Recipe::FromJson(json);
    QCOMPARE(result.error, error);
    QVERIFY(result.recipe.steps.empty());
}

void TestRecipe::ARecipeCutAnywhereIsRefused()
{
    Recipe recipe;
    recipe.steps = {StepOf("curves"), StepOf("watermark")};
    const QByteArray whole = recipe.ToJson();
    for (int length = 0; length < whole.trimmed().size(); ++length)
        QVERIFY(!Recipe::FromJson(whole.left(length)).error.isEmpty());
}

void TestRecipe::TakesAsMuchAsTheLimitsAllow()
{
    const auto [steps, error] = Recipe::FromJson(WithSteps(Recipe::MaxSteps));
    QCOMPARE(error, QString());
    QCOMPARE(int(steps.steps.size()), Recipe::MaxSteps);
    QCOMPARE(Recipe::FromJson(steps.ToJson()).error, QString());
    const QByteArray corners = Corners(RecipeSelection::MaxCorners);
    const auto [polygon, problem] = Recipe::FromJson(WithSelection("{\"polygon\": " + corners + '}'));
    QCOMPARE(problem, QString());
    QCOMPARE(polygon.steps.front().selection.corners.size(), RecipeSelection::MaxCorners);
    QVERIFY(polygon.steps.front().selection.OfShape(Picture).bounds.isValid());
    const QByteArray padding(Recipe::MaxBytes - WithSteps(1).size(), ' ');
    QCOMPARE(Recipe::FromJson(WithSteps(1) + padding).error, QString());
    QCOMPARE(Recipe::FromJson(WithSteps(1) + padding + ' ').error,
             QStringLiteral("it is longer than 16777216 bytes"));
}

void TestRecipe::ShapesSelectTheirPixels_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QPoint>("place");
    QTest::addColumn<int>("coverage");
    const QByteArray rectangle = R"({"rectangle": [10, 5, 20.5, 15]})";
    QTest::newRow("first pixel of a rectangle") << rectangle << QPoint(10, 5) << 255;
    QTest::newRow("before it") << rectangle << QPoint(9, 5) << 0;
    QTest::newRow("last row") << rectangle << QPoint(15, 14) << 255;
    QTest::newRow("beyond it") << rectangle << QPoint(15, 15) << 0;
    QTest::newRow("beyond half a column") << rectangle << QPoint(21, 10) << 0;
    const QByteArray ellipse = R"({"ellipse": [10, 10, 30, 30]})";
    QTest::newRow("middle of an ellipse") << ellipse << QPoint(20, 20) << 255;
    QTest::newRow("left end") << ellipse << QPoint(11, 20) << 255;
    QTest::newRow("corner") << ellipse << QPoint(11, 11) << 0;
    const QByteArray polygon = R"({"polygon": [[0, 0], [40, 0], [0, 40]]})";
    QTest::newRow("inside a triangle") << polygon << QPoint(10, 10) << 255;
    QTest::newRow("beyond its long side") << polygon << QPoint(25, 25) << 0;
    const QByteArray twice = R"({"polygon": [[0,0],[20,0],[20,20],[0,20],[0,0],[30,0],[30,30],[0,30]]})";
    QTest::newRow("gone around twice") << twice << QPoint(10, 10) << 0;
    QTest::newRow("gone around once") << twice << QPoint(25, 25) << 255;
    const QByteArray feathered = R"({"rectangle": [-100, -100, 30, 100], "feather": 8})";
    QTest::newRow("far inside a feathered edge") << feathered << QPoint(5, 20) << 255;
    QTest::newRow("far outside a feathered edge") << feathered << QPoint(55, 20) << 0;
}

void TestRecipe::ShapesSelectTheirPixels()
{
    QFETCH(QByteArray, json);
    QFETCH(QPoint, place);
    QFETCH(int, coverage);
    const auto [recipe, error] = Recipe::FromJson(WithSelection(json));
    QCOMPARE(error, QString());
    operations::Selection selection;
    QCOMPARE(recipe.steps.front().selection.Make(Picture, NoMask, selection), QString());
    QVERIFY(!selection.SelectsAll());
    QCOMPARE(At(selection, place.x(), place.y()), coverage);
}

void TestRecipe::AShapeIsTheMaskOfThatShape()
{
    RecipeSelection ellipse;
    ellipse.kind = RecipeSelection::Kind::Ellipse;
    ellipse.edges = {5.5, 4, 40, 31};
    ellipse.feather = 6;
    QPainterPath path;
    path.addEllipse(QRectF(QPointF(5.5, 4), QPointF(40, 31)));
    const operations::Selection expected = operations::MaskOfShape(path, 6, Picture);
    const operations::Selection actual = ellipse.OfShape(Picture);
    QCOMPARE(actual.offset, expected.offset);
    QCOMPARE(actual.bounds, expected.bounds);
    for (int y = 0; y < Picture.height(); ++y)
        for (int x = 0; x < Picture.width(); ++x)
            QCOMPARE(At(actual, x, y), At(expected, x, y));
    QVERIFY(RecipeSelection().OfShape(Picture).SelectsAll());
}

void TestRecipe::AShapeThatMemoryHasNoRoomForIsTold()
{
    RecipeSelection rectangle;
    rectangle.kind = RecipeSelection::Kind::Rectangle;
    rectangle.edges = {0, 0, 30000, 20000};
    const MemoryLimit noRoomForItsCoverage;
    operations::Selection selection;
    const QString problem = rectangle.Make(QSize(30000, 20000), NoMask, selection);
    QVERIFY2(problem.contains(QStringLiteral("memory")), qPrintable(problem));
}

void TestRecipe::FarOutShapesAreHarmless_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<int>("coverage");
    QTest::newRow("around all") << QByteArray("[-1000000, -1000000, 1000000, 1000000]") << 255;
    QTest::newRow("to the right") << QByteArray("[999999, 0, 1000000, 1000000]") << 0;
    QTest::newRow("empty") << QByteArray("[20, 10, 20, 10]") << 0;
}

void TestRecipe::FarOutShapesAreHarmless()
{
    QFETCH(QByteArray, json);
    QFETCH(int, coverage);
    for (const char* const kind : {"rectangle", "ellipse"}) {
        const auto [recipe, error] = Recipe::FromJson(
            WithSelection(QByteArray("{\"") + kind + "\": " + json + R"(, "feather": 500})"));
        QCOMPARE(error, QString());
        const operations::Selection selection = recipe.steps.front().selection.OfShape(Picture);
        QVERIFY(!selection.SelectsAll());
        QCOMPARE(At(selection, 20, 10), coverage);
    }
}

void TestRecipe::AMaskFileIsReadByTheCaller()
{
    RecipeSelection mask;
    QCOMPARE(mask.FromJson(QJsonObject{{"mask", "sky.png"}, {"offset", QJsonArray{3, -4}}}), QString());
    QString asked;
    const auto read = [&asked](const QString& file, operations::Selection& selection) {
        asked = file;
        selection = operations::Selection::Of(RGBA32iImage(5, 6), QPoint(10, 20));
        return QString();
    };
    operations::Selection selection;
    QCOMPARE(mask.Make(Picture, read, selection), QString());
    QCOMPARE(asked, QStringLiteral("sky.png"));
    QCOMPARE(selection.offset, QPoint(13, 16));
    QCOMPARE(selection.bounds, QRect(0, 0, 5, 6));
    operations::Selection untouched;
    QCOMPARE(mask.Make(Picture, NoMask, untouched), QStringLiteral("no mask is expected"));
    QVERIFY(untouched.SelectsAll());
}

void TestRecipe::FilesAreReadAndWritten()
{
    Recipe recipe;
    recipe.steps = {StepOf("gamma", {{"gamma", 1.5}})};
    QCOMPARE(recipe.Write(Path("r"), Recipe::Existing::Refuse), QString());
    QCOMPARE(TestFiles::BytesOf(Path("r")), recipe.ToJson());
    const auto [read, error] = Recipe::Read(Path("r"));
    QCOMPARE(error, QString());
    QVERIFY(read == recipe);
    QCOMPARE(Recipe().Write(Path("r"), Recipe::Existing::Refuse), Path("r") + ": the file exists already");
    QVERIFY(Recipe::Read(Path("r")).recipe == recipe);
    QCOMPARE(Recipe().Write(Path("r"), Recipe::Existing::Replace), QString());
    QVERIFY(Recipe::Read(Path("r")).recipe == Recipe());
    TestFiles::Store(Path("r"), WithSteps(Recipe::MaxSteps + 1));
    QCOMPARE(Recipe::Read(Path("r")).error, Path("r") + ": steps: there are more than 1000");
}

void TestRecipe::OnlySmallRegularFilesAreRead()
{
    QCOMPARE(::mkfifo(QFile::encodeName(Path("pipe")).constData(), 0600), 0);
    TestFiles::Store(Path("large"), WithSteps(1));
    QFile file(Path("large"));
    QVERIFY(file.resize(qint64(1) << 30)); // sparse
    const std::pair<const char*, const char*> cases[] = {{"pipe", "not a regular file"},
                                                         {".", "folder"},
                                                         {"missing", "No such file"},
                                                         {"large", "larger than"}};
    for (const auto& [name, reason] : cases) {
        const QString error = Recipe::Read(Path(name)).error;
        QVERIFY2(error.startsWith(Path(name) + ": ") && error.contains(QString::fromLatin1(reason)),
                 qPrintable(error));
    }
}

void TestRecipe::WritesNothingThatCannotBeRead()
{
    const operations::Adjustment& brightness =
        *operations::Catalog::Find(QStringLiteral("brightness-contrast"));
    auto settings = brightness.makeSettings();
    QVERIFY(settings->FromPreset("KVBrightnessContrast 1.00000" + QByteArray::fromHex("0000007800000000")));
    Recipe recipe;
    recipe.steps.emplace_back(brightness, std::move(settings));
    QCOMPARE(recipe.Write(Path("r"), Recipe::Existing::Refuse),
             Path("r") + ": steps[0].settings: brightness: 120 is outside -100..100");
    recipe.steps.assign(std::size_t(Recipe::MaxSteps) + 1, StepOf("tint"));
    QCOMPARE(recipe.Write(Path("r"), Recipe::Existing::Refuse),
             Path("r") + ": steps: there are more than 1000");
    QVERIFY(!QFile::exists(Path("r")));
}

QTEST_MAIN(TestRecipe)
#include "tst_Recipe.moc"
