#include "TestPictures.h"
#include "YDTaskWidget.h"
#include "catalog/AdjustmentCatalog.h"
#include "catalog/PanelDialog.h"
#include "gui/YodiCustomSlider.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QJsonDocument>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

constexpr int PatienceMs = 20000;

/// A number away from `value` by a quarter of the range, whole where `value` and `range` are coarse enough.
double Changed(double value, const YDRecord::Range& range, bool isWhole)
{
    double step = (range.maximum - range.minimum) / 4;
    if (step >= 1)
        step = std::floor(step);
    else if (isWhole)
        return value == range.maximum ? range.minimum : range.maximum;
    return value + step <= range.maximum ? value + step : value - step;
}

/// The list with every number in it changed; a list that is empty gets a point.
QJsonArray Changed(const QJsonArray& list, const YDRecord::Range& range)
{
    const auto changedElement = [&range](const QJsonValue& element) {
        return element.isArray() ? QJsonValue(Changed(element.toArray(), range))
                                 : QJsonValue(Changed(element.toDouble(), range, true));
    };
    QJsonArray changed;
    for (const QJsonValue& element : list)
        changed.append(changedElement(element));
    return list.isEmpty() ? QJsonArray{QJsonArray{range.minimum, range.maximum}} : changed;
}

QString ChangedColor(const QString& name)
{
    return name == QLatin1String("#336699") ? QStringLiteral("#996633") : QStringLiteral("#336699");
}

/// What each control of the adjustment shows. Not the preview toggle, which belongs to the frame.
QStringList ControlsOf(const YDAdjustmentWidget& widget)
{
    QStringList controls;
    const auto children = widget.findChildren<QWidget*>();
    for (const QWidget* const child : children)
        for (const char* const property : {"value", "currentIndex", "checked", "plainText"}) {
            const QVariant shown = child->property(property);
            if (shown.isValid() && !qobject_cast<const QProgressBar*>(child) &&
                child->objectName() != QLatin1String("m_pPreviewSlider"))
                controls.append(child->objectName() + QLatin1Char('=') + shown.toString());
        }
    return controls;
}

/// A picture file to put onto pictures.
QString StampFile()
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("stamp.png"));
    if (!QFile::exists(path) && !ImageToQImage(TestPictures::Noise(20, 10)).save(path))
        qFatal("no picture file could be written");
    return path;
}

/// A value of the field that differs from its default and that its control can show.
QJsonValue Changed(const operations::SettingsField& field)
{
    const QJsonValue& value = field.defaultValue;
    const YDRecord::Range range = field.range.value_or(YDRecord::Range{0, 100});
    if (value.isBool())
        return !value.toBool();
    if (value.isDouble())
        return Changed(value.toDouble(), range, field.typeName == QLatin1String("whole number"));
    if (value.isArray())
        return Changed(value.toArray(), range);
    if (field.typeName == QLatin1String("font"))
        return QLatin1Char('x') + value.toString(); // another family
    if (field.name == QLatin1String("fileName"))
        return StampFile();
    return field.typeName == QLatin1String("colour") ? ChangedColor(value.toString())
                                                     : value.toString() + QLatin1Char('x');
}

/// The list with its first number replaced.
QJsonArray WithFirstNumber(const QJsonArray& list, double number)
{
    QJsonArray replaced = list;
    if (!list.isEmpty())
        replaced[0] =
            list[0].isArray() ? QJsonValue(WithFirstNumber(list[0].toArray(), number)) : QJsonValue(number);
    return replaced;
}

/// The field's default with `number` for it, or for the first number in it.
QJsonValue WithNumber(const operations::SettingsField& field, double number)
{
    return field.defaultValue.isArray() ? QJsonValue(WithFirstNumber(field.defaultValue.toArray(), number))
                                        : QJsonValue(number);
}

/// An adjustment as it is known outside.
struct Known
{
    const char* name;
    QStringList fields;  ///< in stream order, with their controls' ranges
    QStringList neutral; ///< settings, as JSON, that change no pixel; none where all do
};

/// Every adjustment, in the order of the menu.
const std::vector<Known>& AllKnown()
{
    static const std::vector<Known> all{
        {"brightness-contrast", {"brightness -100..100", "contrast -100..100"}, {"{}"}},
        {"exposure", {"exposure -20..20", "offset -0.5..0.5"}, {"{}"}},
        {"gamma", {"gamma 0.01..5"}, {"{}"}},
        {"posterize", {"levels 2..255"}, {}},
        {"levels",
         {"channel 0..3", "input 0..255", "output 0..255", "gamma 0.01..9.99"},
         {"{}", R"({"channel": 3})"}},
        {"curves", {"channel 0..3", "curves 0..255"}, {"{}", R"({"channel": 3})"}},
        {"threshold", {"level 1..255"}, {}},
        {"hue-saturation", {"hue 0..359", "saturation -100..100", "lightness -100..100", "colorize"}, {"{}"}},
        {"color-balance",
         {"preserveLuminosity", "toneRange 0..3", "cyanRed -100..100", "magentaGreen -100..100",
          "yellowBlue -100..100"},
         {"{}", R"({"preserveLuminosity": false, "toneRange": 1})"}},
        {"black-and-white", {"type 0..5", "r 0..1", "g 0..1", "b 0..1"}, {}},
        {"colorize", {"color", "amount 0..100"}, {R"({"amount": 0})"}},
        {"photo-filter", {"color", "density 0..100"}, {R"({"density": 0})"}},
        {"tint",
         {"blackTone", "whiteTone", "amount 0..100", "type 0..3"},
         {R"({"amount": 0})", R"({"amount": 0, "type": 3})"}},
        {"temperature",
         {"temperature 1000..40000", "tint -100..100", "strength 0..100"},
         {R"({"strength": 0})", "{}", R"({"strength": 0, "temperature": 2000, "tint": 40})"}},
        {"white-balance",
         {"enhanced", "autoStrength 0..100", "overexposureStrength 0..100", "underexposureStrength 0..100",
          "mode 0..2", "useTemperature", "temperature -100..100", "temperatureStrength 0..100"},
         {R"({"autoStrength": 0})", R"({"autoStrength": 0, "enhanced": true})"}},
        {"color-enhancer", {"affected 0..100", "amount 0..100"}, {R"({"amount": 0})"}},
        {"replace-color",
         {"tolerance 0..255", "position 0..3", "color", "opacity 0..100"},
         {R"({"opacity": 0})", R"({"opacity": 0, "tolerance": 255, "position": 3})"}},
        {"fill-color", {"color", "opacity 0..100"}, {R"({"opacity": 0})"}},
        {"selective-colors", {"targets -100..100", "mode 0..1"}, {"{}", R"({"mode": 1})"}},
        {"sign",
         {"alignment", "margins 0..999", "fileName", "blendingMode 0..23", "opacity 0..100"},
         {"{}", R"({"opacity": 0, "blendingMode": 13})"}},
        {"watermark",
         {"angle -179..180", "margins 0..999", "text", "font", "color", "blendingMode 0..23",
          "opacity 0..100", "hrzTiles 1..9", "vrtTiles 1..9"},
         {R"({"opacity": 0})", R"({"text": ""})", R"({"color": "#00ffffff"})"}},
    };
    return all;
}

/// Whether setting the values in code announces changes. These two keep that asymmetry: one connects its
/// control again, the other leaves its controls connected.
bool AnnouncesWhatIsSet(const QString& name)
{
    return name == QLatin1String("exposure") || name == QLatin1String("tint");
}

RGBA32iImage Applied(const operations::Settings& settings, const RGBA32iImage& source,
                     const operations::Selection& selection = {})
{
    const operations::Outcome outcome = settings.MakeTask().ApplyToCopy(source, selection);
    if (!outcome.problem.isEmpty())
        qCritical().noquote() << outcome.problem;
    return outcome.problem.isEmpty() ? outcome.picture : RGBA32iImage();
}

/// A mask of noise that reaches beyond the left border of a picture of at least 600 x 500 pixels.
operations::Selection SomeSelection()
{
    const RGBA32iImage mask = TestPictures::Noise(550, 440);
    for (int y = 0; y < mask.Height(); ++y)
        for (int x = 0; x < mask.Width(); ++x) {
            const quint8 coverage = mask.Row(y)[x].g;
            mask.Row(y)[x] = YDRGBA32i(coverage, coverage, coverage, coverage);
        }
    return {mask, QPoint(-7, 31), QRect(3, 5, 540, 430)};
}

/// Adjustments that change pixels only where a task or a preview is asked for, not by ConvertImage().
bool ConvertsNothing(const QString& name)
{
    return name == QLatin1String("replace-color") || name == QLatin1String("fill-color") ||
           name == QLatin1String("sign") || name == QLatin1String("watermark");
}

} // namespace

/// What holds for every adjustment of the catalogue.
class TestAdjustmentCatalog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void EveryNameIsFoundAndUnique();
    void TheOrderIsThatOfTheMenu();
    void FieldsHaveNamesAndDefaults_data() { Adjustments(); }
    void FieldsHaveNamesAndDefaults();
    void SettingsSurviveJson_data() { Adjustments(); }
    void SettingsSurviveJson();
    void SettingsSurviveAPreset_data() { Adjustments(); }
    void SettingsSurviveAPreset();
    void APresetUnderAnOlderTagIsKnown();
    void APresetThatIsNotWholeIsRefused_data() { Adjustments(); }
    void APresetThatIsNotWholeIsRefused();
    void FieldsStandInStreamOrderWithTheirRanges_data();
    void FieldsStandInStreamOrderWithTheirRanges();
    void ValuesOutsideTheirRangeAreRefused_data() { Adjustments(); }
    void ValuesOutsideTheirRangeAreRefused();
    void WidgetsShowAndGiveBackSettings_data() { Adjustments(); }
    void WidgetsShowAndGiveBackSettings();
    void WidgetsGiveBackWhatTheirSlidersTruncate_data();
    void WidgetsGiveBackWhatTheirSlidersTruncate();
    void EveryNumberHasANameToBeRead_data() { Adjustments(); }
    void EveryNumberHasANameToBeRead();
    void NeutralSettingsChangeNoPixel_data();
    void NeutralSettingsChangeNoPixel();
    void ClearingLeavesNoPictureAndTheDefaults_data() { Adjustments(); }
    void ClearingLeavesNoPictureAndTheDefaults();
    void EverySliderAndSpinBoxHasAnAccessibleName_data() { Adjustments(); }
    void EverySliderAndSpinBoxHasAnAccessibleName();
    void ReturnInAPanelPressesNoneOfItsButtons_data() { Adjustments(); }
    void ReturnInAPanelPressesNoneOfItsButtons();
    void TheFocusGoesThroughThePanelFirst_data() { Adjustments(); }
    void TheFocusGoesThroughThePanelFirst();
    void EveryAdjustmentHasADialogWithButtonsAndAPanelWithout_data() { Adjustments(); }
    void EveryAdjustmentHasADialogWithButtonsAndAPanelWithout();
    void TheSameSettingsGiveTheSameBytesWhicheverWayTheyGo_data();
    void TheSameSettingsGiveTheSameBytesWhicheverWayTheyGo();
    void AChangeIsAnnouncedByTheDialogItself_data() { Adjustments(); }
    void AChangeIsAnnouncedByTheDialogItself();
    void EveryAdjustmentHasAWidget();
    void WhatSettingsLackIsRemarked();
    void WhatCannotBeDrawnIsToldAndLeavesThePicture();
    void WhatFollowsFromTheFieldsIsShown();
    void TextIsParsedByTheFieldsType_data();
    void TextIsParsedByTheFieldsType();

private:
    static void Adjustments();
    static const AdjustmentEntry& Entry()
    {
        QFETCH(QString, name);
        return *AdjustmentCatalog::Find(name);
    }
    static std::unique_ptr<operations::Settings> ChangedSettings(const AdjustmentEntry& entry);
};

void TestAdjustmentCatalog::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_AdjustmentCatalog"));
}

void TestAdjustmentCatalog::Adjustments()
{
    QTest::addColumn<QString>("name");
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries())
        QTest::newRow(qPrintable(entry.name)) << entry.name;
}

std::unique_ptr<operations::Settings> TestAdjustmentCatalog::ChangedSettings(const AdjustmentEntry& entry)
{
    auto settings = entry.makeSettings();
    QJsonObject values;
    const auto fields = settings->Fields();
    for (const operations::SettingsField& field : fields)
        values.insert(field.name, Changed(field));
    const QString problem = settings->FromJson(values);
    if (!problem.isEmpty())
        qFatal("%s", qPrintable(problem));
    return settings;
}

void TestAdjustmentCatalog::EveryNameIsFoundAndUnique()
{
    QSet<QString> names;
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries()) {
        QCOMPARE(AdjustmentCatalog::Find(entry.name), &entry);
        QVERIFY(!entry.Title().isEmpty());
        names.insert(entry.name);
    }
    QCOMPARE(names.size(), int(AdjustmentCatalog::Entries().size()));
    QVERIFY(!AdjustmentCatalog::Find(QStringLiteral("no-such-adjustment")));
    QVERIFY(!AdjustmentCatalog::FindByPreset("KVNoSuch 1.00000"));
    QVERIFY(!AdjustmentCatalog::FindByPreset(QByteArray()));
}

void TestAdjustmentCatalog::TheOrderIsThatOfTheMenu()
{
    const auto& entries = AdjustmentCatalog::Entries();
    QCOMPARE(entries.size(), AllKnown().size());
    operations::Group group = operations::Group::Tone;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        QCOMPARE(entries[i].name, QString::fromLatin1(AllKnown()[i].name));
        QVERIFY2(entries[i].group >= group, AllKnown()[i].name);
        group = entries[i].group;
    }
}

void TestAdjustmentCatalog::FieldsHaveNamesAndDefaults()
{
    const auto settings = Entry().makeSettings();
    const auto fields = settings->Fields();
    QVERIFY(!fields.isEmpty());
    const QJsonObject values = settings->ToJson();
    QCOMPARE(values.size(), fields.size());
    for (const operations::SettingsField& field : fields) {
        QVERIFY(!field.typeName.isEmpty());
        QCOMPARE(values.value(field.name), field.defaultValue);
    }
}

void TestAdjustmentCatalog::SettingsSurviveJson()
{
    const auto changed = ChangedSettings(Entry());
    const auto copy = Entry().makeSettings();
    QCOMPARE(copy->FromJson(changed->ToJson()), QString());
    QCOMPARE(copy->ToJson(), changed->ToJson());
    QVERIFY(copy->ToJson() != Entry().makeSettings()->ToJson());
}

void TestAdjustmentCatalog::SettingsSurviveAPreset()
{
    const auto changed = ChangedSettings(Entry());
    const auto copy = Entry().makeSettings();
    if (!changed->HasPreset()) {
        QVERIFY(changed->ToPreset().isEmpty());
        return;
    }
    QVERIFY(copy->FromPreset(changed->ToPreset()));
    QCOMPARE(copy->ToJson(), changed->ToJson());
    QCOMPARE(AdjustmentCatalog::FindByPreset(changed->ToPreset()), &Entry());
}

void TestAdjustmentCatalog::APresetUnderAnOlderTagIsKnown()
{
    const AdjustmentEntry* const entry = AdjustmentCatalog::Find(QStringLiteral("black-and-white"));
    const auto settings = entry->makeSettings();
    QCOMPARE(settings->SetFromText(QStringLiteral("type=3")), QString());
    const QByteArray preset = settings->ToPreset();
    QVERIFY(preset.startsWith("KVBlackAndWhite 1.00000"));
    const QByteArray older = "KVDesaturate 1.00000" + preset.mid(23);
    QCOMPARE(AdjustmentCatalog::FindByPreset(older), entry);
    QVERIFY(settings->IsTagOf(older));
    const auto copy = entry->makeSettings();
    QVERIFY(copy->FromPreset(older));
    QCOMPARE(copy->ToJson(), settings->ToJson());
    QCOMPARE(copy->ToPreset(), preset); // it is stored under today's tag
    QVERIFY(!AdjustmentCatalog::FindByPreset("KVDesaturate 1.00001" + preset.mid(23)));
    QVERIFY(!AdjustmentCatalog::FindByPreset("KVDesaturate 1.0000"));
}

void TestAdjustmentCatalog::APresetThatIsNotWholeIsRefused()
{
    const auto settings = ChangedSettings(Entry());
    const QByteArray preset = settings->ToPreset();
    const QJsonObject defaults = Entry().makeSettings()->ToJson();
    for (int length = 0; length < preset.size(); ++length) {
        QVERIFY(!settings->FromPreset(preset.left(length)));
        QCOMPARE(settings->ToJson(), defaults);
    }
    QVERIFY(!settings->FromPreset(preset + 'x'));
    QCOMPARE(settings->ToJson(), defaults);
}

void TestAdjustmentCatalog::FieldsStandInStreamOrderWithTheirRanges_data()
{
    QTest::addColumn<QStringList>("fields");
    for (const Known& known : AllKnown())
        QTest::newRow(known.name) << known.fields;
}

void TestAdjustmentCatalog::FieldsStandInStreamOrderWithTheirRanges()
{
    QStringList fields;
    const auto settings = AdjustmentCatalog::Find(QLatin1String(QTest::currentDataTag()))->makeSettings();
    for (const operations::SettingsField& field : settings->Fields())
        fields.append(field.range ? QStringLiteral("%1 %2..%3")
                                        .arg(field.name)
                                        .arg(field.range->minimum)
                                        .arg(field.range->maximum)
                                  : field.name);
    QTEST(fields, "fields");
}

void TestAdjustmentCatalog::ValuesOutsideTheirRangeAreRefused()
{
    const auto settings = Entry().makeSettings();
    const QJsonObject before = settings->ToJson();
    const auto fields = settings->Fields();
    for (const operations::SettingsField& field : fields)
        if (field.range) {
            QVERIFY(
                !settings->FromJson({{field.name, WithNumber(field, field.range->maximum + 1)}}).isEmpty());
            QVERIFY(
                !settings->FromJson({{field.name, WithNumber(field, field.range->minimum - 1)}}).isEmpty());
            QVERIFY(!settings->FromJson({{field.name, QStringLiteral("x")}}).isEmpty());
        }
    QVERIFY(!settings->FromJson({{QStringLiteral("noSuchField"), 1}}).isEmpty());
    QCOMPARE(settings->ToJson(), before);
}

void TestAdjustmentCatalog::WidgetsShowAndGiveBackSettings()
{
    const auto changed = ChangedSettings(Entry());
    for (const bool isDialog : {false, true}) {
        const auto widget = Entry().makeWidget(isDialog, nullptr);
        QSignalSpy data(widget.get(), &YDAdjustmentWidget::DataChanged);
        const auto settings = Entry().makeSettings();
        Entry().take(*widget, *settings);
        QCOMPARE(settings->ToJson(), Entry().makeSettings()->ToJson());
        Entry().show(*widget, *changed);
        Entry().take(*widget, *settings);
        QCOMPARE(settings->ToJson(), changed->ToJson());
        QCOMPARE(data.count() > 0, AnnouncesWhatIsSet(Entry().name));
        widget->Reset();
        Entry().take(*widget, *settings);
        QCOMPARE(settings->ToJson(), Entry().makeSettings()->ToJson());
    }
}

void TestAdjustmentCatalog::WidgetsGiveBackWhatTheirSlidersTruncate_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QJsonObject>("values");
    QTest::newRow("exposure") << "exposure" << QJsonObject{{"exposure", -1.5}, {"offset", 0.0}};
    QTest::newRow("offset") << "exposure" << QJsonObject{{"exposure", 0.0}, {"offset", -0.25}};
    QTest::newRow("gamma") << "gamma" << QJsonObject{{"gamma", 0.29}};
}

void TestAdjustmentCatalog::WidgetsGiveBackWhatTheirSlidersTruncate()
{
    QFETCH(QJsonObject, values);
    const auto widget = Entry().makeWidget(false, nullptr);
    const auto settings = Entry().makeSettings();
    QCOMPARE(settings->FromJson(values), QString());
    for (int times = 0; times < 3; ++times) { // an editor shows again what it took
        Entry().show(*widget, *settings);
        Entry().take(*widget, *settings);
        QCOMPARE(settings->ToJson(), values);
    }
}

void TestAdjustmentCatalog::EveryNumberHasANameToBeRead()
{
    const auto widget = Entry().makeWidget(false, nullptr);
    const auto boxes = widget->findChildren<QAbstractSpinBox*>();
    for (QAbstractSpinBox* const box : boxes) {
        const QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(box);
        QVERIFY(spoken);
        QVERIFY2(!spoken->text(QAccessible::Name).isEmpty(), qPrintable(box->objectName()));
    }
    const auto labels = widget->findChildren<QLabel*>();
    for (const QLabel* const label : labels)
        if (label->text().endsWith(QLatin1Char(':')))
            QVERIFY2(label->buddy(), qPrintable(label->objectName()));
}

void TestAdjustmentCatalog::NeutralSettingsChangeNoPixel_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("neutral");
    for (const Known& known : AllKnown())
        QTest::newRow(known.name) << known.name << known.neutral;
}

void TestAdjustmentCatalog::NeutralSettingsChangeNoPixel()
{
    QFETCH(QStringList, neutral);
    const RGBA32iImage before = TestPictures::Noise(200, 100);
    for (const QString& json : qAsConst(neutral)) {
        const auto settings = Entry().makeSettings();
        QCOMPARE(settings->FromJson(QJsonDocument::fromJson(json.toUtf8()).object()), QString());
        QVERIFY2(TestPictures::AreEqual(Applied(*settings, before), before), qPrintable(json));
        const auto panel = Entry().makeWidget(false, nullptr);
        Entry().show(*panel, *settings);
        RGBA32iImage converted = before.DeepCopy();
        panel->ConvertImage(converted, {}, {}, {});
        QVERIFY2(TestPictures::AreEqual(converted, before), qPrintable(json));
    }
    if (neutral.isEmpty())
        QVERIFY(!TestPictures::AreEqual(Applied(*Entry().makeSettings(), before), before));
}

void TestAdjustmentCatalog::ClearingLeavesNoPictureAndTheDefaults()
{
    const auto changed = ChangedSettings(Entry());
    const RGBA32iImage source = TestPictures::Noise(30, 20);
    for (const bool isDialog : {false, true}) {
        const auto widget = Entry().makeWidget(isDialog, nullptr);
        const QStringList controls = ControlsOf(*widget);
        QSignalSpy ready(widget.get(), &YDAdjustmentWidget::ImageReady);
        Entry().show(*widget, *changed);
        widget->SetImage(source, RGBA32iImage(), QPoint(), QRect());
        if (isDialog)
            QTRY_VERIFY_WITH_TIMEOUT(ready.count() > 0 && !widget->AdjustedImage().IsEmpty(), PatienceMs);
        QVERIFY(ControlsOf(*widget) != controls);
        widget->ClearData();
        QVERIFY(widget->SourceImage().IsEmpty());
        QVERIFY(widget->AdjustedImage().IsEmpty());
        QCOMPARE(ControlsOf(*widget), controls);
        QCOMPARE(Entry().SettingsOf(*widget)->ToJson(), Entry().makeSettings()->ToJson());
    }
}

void TestAdjustmentCatalog::EverySliderAndSpinBoxHasAnAccessibleName()
{
    const auto panel = Entry().makeWidget(false, nullptr);
    const auto children = panel->findChildren<QWidget*>();
    for (QWidget* const child : children) {
        const bool isInput = qobject_cast<QAbstractSlider*>(child) ||
                             qobject_cast<QAbstractSpinBox*>(child) || qobject_cast<YodiCustomSlider*>(child);
        if (!isInput || child->focusPolicy() == Qt::NoFocus)
            continue;
        QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(child);
        QVERIFY2(interface, qPrintable(child->objectName()));
        QVERIFY2(!interface->text(QAccessible::Name).isEmpty(), qPrintable(child->objectName()));
    }
}

/// Whoever puts a panel into a dialog means the dialog's own button by Return.
void TestAdjustmentCatalog::ReturnInAPanelPressesNoneOfItsButtons()
{
    QDialog dialog;
    QVBoxLayout layout(&dialog);
    const auto panel = Entry().makeWidget(false, &dialog);
    layout.addWidget(panel.get());
    dialog.show();
    int presses = 0;
    const auto buttons = panel->findChildren<QPushButton*>();
    for (QPushButton* const button : buttons) {
        button->setEnabled(true);                                    // as with a picture
        disconnect(button, &QPushButton::clicked, nullptr, nullptr); // no dialog to wait for
        connect(button, &QPushButton::clicked, &dialog, [&presses] { ++presses; });
    }
    const auto spinBoxes = panel->findChildren<QAbstractSpinBox*>();
    for (QAbstractSpinBox* const spinBox : spinBoxes)
        QTest::keyClick(spinBox, Qt::Key_Return);
    QCOMPARE(presses, 0);
}

void TestAdjustmentCatalog::TheFocusGoesThroughThePanelFirst()
{
    const auto widget = Entry().makeWidget(true, nullptr);
    widget->show();
    QVERIFY(QTest::qWaitForWindowActive(widget.get()));
    const QWidget* const content = widget->findChild<QWidget*>(QStringLiteral("m_pContent"));
    QVERIFY(content->isAncestorOf(QApplication::focusWidget()));
    const QWidget* const first = QApplication::focusWidget();
    QStringList outside;
    do {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const QWidget* const focus = QApplication::focusWidget();
        if (!content->isAncestorOf(focus))
            outside.append(focus->objectName());
        else if (focus != first)
            QVERIFY2(outside.isEmpty(), qPrintable(focus->objectName()));
    } while (QApplication::focusWidget() != first && outside.size() < 10);
    QCOMPARE(outside.size(), 4); // the preview toggle and three buttons
    QCOMPARE(outside.first(), QStringLiteral("m_pPreviewSlider"));
}

/// A stamp and a text have panels only; the catalogue frames them as dialogs.
void TestAdjustmentCatalog::EveryAdjustmentHasADialogWithButtonsAndAPanelWithout()
{
    const auto panel = Entry().makeWidget(false, nullptr);
    QVERIFY(!panel->findChild<QWidget*>(QStringLiteral("m_pButtons")));
    const auto dialog = Entry().makeWidget(true, nullptr);
    QVERIFY(dialog->findChild<QWidget*>(QStringLiteral("m_pButtons")));
    QCOMPARE(dialog->GetWidgetName(), panel->GetWidgetName());
    QVERIFY(!dialog->GetWidgetName().isEmpty());
}

void TestAdjustmentCatalog::WhatCannotBeDrawnIsToldAndLeavesThePicture()
{
    const AdjustmentEntry* const sign = AdjustmentCatalog::Find(QStringLiteral("sign"));
    const auto settings = sign->makeSettings();
    QCOMPARE(settings->SetFromText(QStringLiteral("fileName=/no/such/stamp.png")), QString());
    const RGBA32iImage source = TestPictures::Noise(30, 20);
    const RGBA32iImage image = source.DeepCopy();
    const QString problem = settings->MakeTask().Apply(image).problem;
    QVERIFY2(problem.contains(QStringLiteral("/no/such/stamp.png")), qPrintable(problem));
    QVERIFY(TestPictures::AreEqual(image, source));

    const auto dialog = sign->makeWidget(true, nullptr);
    auto* const remark = dialog->findChild<QLabel*>(QStringLiteral("Remark"));
    QVERIFY(remark->isHidden());
    sign->show(*dialog, *settings);
    QSignalSpy ready(dialog.get(), &YDAdjustmentWidget::ImageReady);
    dialog->SetImage(source, RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QCOMPARE(dialog->Problem(), problem);
    QVERIFY(dialog->AdjustedImage().IsEmpty());
    QVERIFY(!remark->isHidden());
    QCOMPARE(remark->text().remove(QChar(0x200b)), problem);
}

void TestAdjustmentCatalog::WhatSettingsLackIsRemarked()
{
    const AdjustmentEntry* const sign = AdjustmentCatalog::Find(QStringLiteral("sign"));
    const auto settings = sign->makeSettings();
    QVERIFY(!settings->WhatIsMissing().isEmpty());
    const auto dialog = sign->makeWidget(true, nullptr);
    QCOMPARE(dialog->WhatIsMissing(), settings->WhatIsMissing());
    QSignalSpy ready(dialog.get(), &YDAdjustmentWidget::ImageReady);
    dialog->SetImage(TestPictures::Noise(30, 20), RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QCOMPARE(dialog->findChild<QLabel*>(QStringLiteral("Remark"))->text(), settings->WhatIsMissing());
    QCOMPARE(settings->SetFromText(QStringLiteral("fileName=a.png")), QString());
    QCOMPARE(settings->WhatIsMissing(), QString());
}

/// Host, listeners to changes and the preview hear of what a control does, in a dialog of any kind.
void TestAdjustmentCatalog::AChangeIsAnnouncedByTheDialogItself()
{
    const auto dialog = Entry().makeWidget(true, nullptr);
    QStringList heard;
    connect(dialog.get(), &KVAdjustmentWidget::UserParamsChanged, this, [&] { heard.append("host"); });
    connect(dialog.get(), &YDAdjustmentWidget::DataChanged, this, [&] { heard.append("data"); });
    auto* const spin = dialog->findChild<QSpinBox*>();
    auto* const fraction = dialog->findChild<QDoubleSpinBox*>();
    auto* const box = dialog->findChild<QComboBox*>();
    if (auto* const button = dialog->findChild<QRadioButton*>(QStringLiteral("m_pCIE")))
        button->setChecked(true); // the weights can be edited for one kind only
    else if (spin)
        spin->setValue(spin->value() == spin->maximum() ? spin->minimum() : spin->maximum());
    else if (fraction)
        fraction->setValue(fraction->maximum());
    else if (box)
        box->setCurrentIndex(1);
    QVERIFY(heard.contains("host"));
    QCOMPARE(heard.first(), QStringLiteral("host"));
    QCOMPARE(heard.contains("data"), Entry().name != QLatin1String("curves")); // that is the channel in view
}

/// Every field changed, and ways that these settings do not take.
void TestAdjustmentCatalog::TheSameSettingsGiveTheSameBytesWhicheverWayTheyGo_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("json");
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries())
        QTest::newRow(qPrintable(entry.name)) << entry.name << QString();
    const auto add = [](const char* name, const char* json) {
        QTest::addRow("%s %s", name, json) << QString::fromLatin1(name) << QString::fromLatin1(json);
    };
    for (const char* const type : {R"({"type": 0})", R"({"type": 1})", R"({"type": 2})", R"({"type": 3})"})
        add("tint", type);
    add("white-balance", R"({"mode": 0, "useTemperature": true, "temperature": -60})");
    add("white-balance", R"({"mode": 1, "useTemperature": true, "temperature": 60})");
    add("white-balance", R"({"mode": 2, "useTemperature": true, "temperature": 60})");
    add("white-balance", R"({"enhanced": true, "useTemperature": true, "temperature": 60})");
}

/// From the settings' own task, from a panel's, from ConvertImage() and from a dialog's preview, with a
/// selection and without.
void TestAdjustmentCatalog::TheSameSettingsGiveTheSameBytesWhicheverWayTheyGo()
{
    QFETCH(QString, json);
    const RGBA32iImage source = TestPictures::Noise(700, 600); // larger than the margins
    const RGBA32iImage untouched = source.DeepCopy();
    const auto settings = json.isEmpty() ? ChangedSettings(Entry()) : Entry().makeSettings();
    QCOMPARE(settings->FromJson(QJsonDocument::fromJson(json.toUtf8()).object()), QString());
    const auto panel = Entry().makeWidget(false, nullptr);
    Entry().show(*panel, *settings);
    const auto dialog = Entry().makeWidget(true, nullptr);
    Entry().show(*dialog, *settings);
    QSignalSpy ready(dialog.get(), &YDAdjustmentWidget::ImageReady);
    for (const operations::Selection& selection : {operations::Selection(), SomeSelection()}) {
        const RGBA32iImage expected = Applied(*settings, source, selection);
        QVERIFY(!TestPictures::AreEqual(expected, source));
        QVERIFY(TestPictures::AreEqual(panel->MakeTask().ApplyToCopy(source, selection).picture, expected));

        for (const auto* const widget : {&panel, &dialog}) {
            RGBA32iImage converted = source.DeepCopy();
            const RGBA32iImage pixels = converted;
            if (widget == &panel)
                panel->SetImage(converted, {}, {}, {});
            (*widget)->ConvertImage(converted, selection.mask, selection.offset, selection.bounds);
            const bool isFrame = &PanelDialog::PanelOf(**widget) != widget->get(); // and converts
            const bool isLeft = ConvertsNothing(Entry().name) && !isFrame;
            QVERIFY(TestPictures::AreEqual(converted, isLeft ? source : expected));
            QVERIFY(converted.SharesPixelsWith(pixels)); // those that were handed in
        }

        ready.clear();
        dialog->SetImage(source, selection.mask, selection.offset, selection.bounds);
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
        QVERIFY(TestPictures::AreEqual(dialog->AdjustedImage(), expected));
        QVERIFY(TestPictures::AreEqual(source, untouched));
    }
}

/// The widgets' half of the table is complete and in the same order.
void TestAdjustmentCatalog::EveryAdjustmentHasAWidget()
{
    QCOMPARE(AdjustmentCatalog::Entries().size(), operations::Catalog::All().size());
    for (std::size_t i = 0; i < operations::Catalog::All().size(); ++i)
        QCOMPARE(AdjustmentCatalog::Entries()[i].name, operations::Catalog::All()[i].name);
}

void TestAdjustmentCatalog::WhatFollowsFromTheFieldsIsShown()
{
    const AdjustmentEntry* const levels = AdjustmentCatalog::Find(QStringLiteral("levels"));
    const auto settings = levels->makeSettings();
    QCOMPARE(settings->SetFromText(QStringLiteral("gamma=[2, 1, 1, 1]")), QString());
    const auto panel = levels->makeWidget(false, nullptr);
    levels->show(*panel, *settings);
    const auto* const slider = panel->findChild<YodiCustomSlider*>(QStringLiteral("m_pInputSlider"));
    QCOMPARE(slider->Value(1), 113); // 127 + (-127 * 1000) / 8990
}

void TestAdjustmentCatalog::TextIsParsedByTheFieldsType_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("number") << "brightness=30" << true;
    QTest::newRow("negative") << "contrast=-10" << true;
    QTest::newRow("whole, written as a fraction") << "contrast=10.0" << true;
    QTest::newRow("fraction") << "contrast=10.5" << false;
    QTest::newRow("too large") << "brightness=101" << false;
    QTest::newRow("not a number") << "brightness=bright" << false;
    QTest::newRow("infinite") << "brightness=inf" << false;
    QTest::newRow("nothing") << "brightness=" << false;
    QTest::newRow("no such field") << "hue=3" << false;
    QTest::newRow("no value") << "brightness" << false;
    QTest::newRow("no field") << "=3" << false;
    QTest::newRow("empty") << "" << false;
}

void TestAdjustmentCatalog::TextIsParsedByTheFieldsType()
{
    QFETCH(QString, text);
    QFETCH(bool, isTaken);
    const auto settings = AdjustmentCatalog::Find(QStringLiteral("brightness-contrast"))->makeSettings();
    QCOMPARE(settings->SetFromText(text).isEmpty(), isTaken);
    QCOMPARE(settings->ToJson() != AdjustmentCatalog::Entries().front().makeSettings()->ToJson(), isTaken);
}

QTEST_MAIN(TestAdjustmentCatalog)
#include "tst_AdjustmentCatalog.moc"
