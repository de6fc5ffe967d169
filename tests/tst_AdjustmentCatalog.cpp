#include "TestPictures.h"
#include "YDAdjustmentWidget.h"
#include "catalog/AdjustmentCatalog.h"

#include <QRandomGenerator>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr int PatienceMs = 20000;

/// A value of the field that differs from its default.
QJsonValue Changed(const SettingsField& field)
{
    if (field.defaultValue.isBool())
        return !field.defaultValue.toBool();
    if (field.defaultValue.isDouble() && field.range)
        return field.defaultValue.toDouble() == field.range->maximum ? field.range->minimum
                                                                     : field.range->maximum;
    return field.defaultValue;
}

} // namespace

/// What holds for every adjustment of the catalogue.
class TestAdjustmentCatalog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void EveryNameIsFoundAndUnique();
    void FieldsHaveNamesAndDefaults_data() { Adjustments(); }
    void FieldsHaveNamesAndDefaults();
    void SettingsSurviveJson_data() { Adjustments(); }
    void SettingsSurviveJson();
    void SettingsSurviveAPreset_data() { Adjustments(); }
    void SettingsSurviveAPreset();
    void APresetThatIsNotWholeIsRefused_data() { Adjustments(); }
    void APresetThatIsNotWholeIsRefused();
    void ValuesOutsideTheirRangeAreRefused_data() { Adjustments(); }
    void ValuesOutsideTheirRangeAreRefused();
    void WidgetsShowAndGiveBackSettings_data() { Adjustments(); }
    void WidgetsShowAndGiveBackSettings();
    void NeutralSettingsChangeNoPixel_data() { Adjustments(); }
    void NeutralSettingsChangeNoPixel();
    void DialogsPreviewWhatPanelsApply_data() { Adjustments(); }
    void DialogsPreviewWhatPanelsApply();
    void TextIsParsedByTheFieldsType_data();
    void TextIsParsedByTheFieldsType();

private:
    static void Adjustments();
    static const AdjustmentEntry& Entry()
    {
        QFETCH(QString, name);
        return *AdjustmentCatalog::Find(name);
    }
    static std::unique_ptr<AdjustmentSettings> ChangedSettings(const AdjustmentEntry& entry);
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

std::unique_ptr<AdjustmentSettings> TestAdjustmentCatalog::ChangedSettings(const AdjustmentEntry& entry)
{
    auto settings = entry.makeSettings();
    QJsonObject values;
    const auto fields = settings->Fields();
    for (const SettingsField& field : fields)
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

void TestAdjustmentCatalog::FieldsHaveNamesAndDefaults()
{
    const auto settings = Entry().makeSettings();
    const auto fields = settings->Fields();
    QVERIFY(!fields.isEmpty());
    const QJsonObject values = settings->ToJson();
    QCOMPARE(values.size(), fields.size());
    for (const SettingsField& field : fields) {
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

void TestAdjustmentCatalog::ValuesOutsideTheirRangeAreRefused()
{
    const auto settings = Entry().makeSettings();
    const QJsonObject before = settings->ToJson();
    const auto fields = settings->Fields();
    for (const SettingsField& field : fields)
        if (field.defaultValue.isDouble() && field.range) {
            QVERIFY(!settings->FromJson({{field.name, field.range->maximum + 1}}).isEmpty());
            QVERIFY(!settings->FromJson({{field.name, field.range->minimum - 1}}).isEmpty());
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
        settings->TakeFrom(*widget);
        QCOMPARE(settings->ToJson(), Entry().makeSettings()->ToJson());
        changed->ShowIn(*widget);
        settings->TakeFrom(*widget);
        QCOMPARE(settings->ToJson(), changed->ToJson());
        QCOMPARE(data.count(), 0);
        widget->Reset();
        settings->TakeFrom(*widget);
        QCOMPARE(settings->ToJson(), Entry().makeSettings()->ToJson());
    }
}

void TestAdjustmentCatalog::NeutralSettingsChangeNoPixel()
{
    const RGBA32iImage before = TestPictures::Noise(200, 100);
    RGBA32iImage image = before.DeepCopy();
    const auto panel = Entry().makeWidget(false, nullptr);
    Entry().apply(*panel, image, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(TestPictures::AreEqual(image, before));
}

void TestAdjustmentCatalog::DialogsPreviewWhatPanelsApply()
{
    const RGBA32iImage source = TestPictures::Noise(300, 200);
    const auto settings = ChangedSettings(Entry());
    const auto dialog = Entry().makeWidget(true, nullptr);
    settings->ShowIn(*dialog);
    QSignalSpy ready(dialog.get(), &YDAdjustmentWidget::ImageReady);
    dialog->SetImage(source, RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    RGBA32iImage image = source.DeepCopy();
    const auto panel = Entry().makeWidget(false, nullptr);
    settings->ShowIn(*panel);
    Entry().apply(*panel, image, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(TestPictures::AreEqual(dialog->AdjustedImage(), image));
    QVERIFY(!TestPictures::AreEqual(image, source));
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
