#include "DialogDriver.h"
#include "KVFillColorWidget.h"
#include "PanelKit.h"
#include "TestColors.h"
#include "TestPictures.h"
#include "YDColorizeWidget.h"
#include "YDPhotoFilterWidget.h"
#include "YDReplaceColorWidget.h"
#include "YDTintWidget.h"
#include "catalog/AdjustmentCatalog.h"

#include <QPushButton>
#include <QTest>

#include <memory>
#include <vector>

namespace {

using namespace DialogDriver;
using PanelKit::Announcements;
using PanelKit::Changes;
using PanelKit::PatienceMs;

const QColor Red(200, 10, 20);
const QColor Blue(10, 20, 200);

/// A button of a panel that shows a colour of its settings, and opens a dialog whose choice is seen at once.
struct Button
{
    const char* panel;
    const char* name;
    const char* field;
    const char* title;
    bool isAcceptingAChange; ///< whatever colour is accepted
    std::unique_ptr<Announcements> (*listen)(YDTaskWidget& widget);
};

template <class Widget>
Button ButtonOf(const char* panel, const char* name, const char* field, const char* title,
                bool isAcceptingAChange = false)
{
    return {panel, name, field, title, isAcceptingAChange, [](YDTaskWidget& widget) {
                return std::make_unique<Announcements>(static_cast<Widget&>(widget));
            }};
}

const std::vector<Button>& Buttons()
{
    static const std::vector<Button> all{
        ButtonOf<YDColorizeWidget>("colorize", "m_pColor", "color", "Select a color"),
        ButtonOf<YDPhotoFilterWidget>("photo-filter", "m_pColor", "color", "Select a filter color"),
        ButtonOf<YDTintWidget>("tint", "m_pBlackTone", "blackTone", "Select a black tone"),
        ButtonOf<YDTintWidget>("tint", "m_pWhiteTone", "whiteTone", "Select a white tone"),
        ButtonOf<YDReplaceColorWidget>("replace-color", "m_pSelectDestinationColor", "color",
                                       "Select replacement color", true),
        ButtonOf<KVFillColorWidget>("fill-color", "m_pColor", "color", "Select a color"),
    };
    return all;
}

/// A dialog of the adjustment with the button.
struct Fixture
{
    explicit Fixture(const Button& of)
        : entry(*AdjustmentCatalog::Find(QString::fromLatin1(of.panel))),
          field(QString::fromLatin1(of.field)), widget(entry.makeWidget(true, nullptr)),
          button(PanelKit::Child<QPushButton>(*widget, of.name)), changes(of.listen(*widget))
    {}

    QJsonObject Settings() const { return entry.SettingsOf(*widget)->ToJson(); }
    QColor Color() const { return {Settings().value(field).toString()}; }
    /// The defaults but for the colour.
    QJsonObject WithColor(const QColor& color) const
    {
        QJsonObject settings = entry.makeSettings()->ToJson();
        settings.insert(field, color.name());
        return settings;
    }
    void ShowColor(const QColor& color) const
    {
        const auto settings = entry.makeSettings();
        if (!settings->FromJson(WithColor(color)).isEmpty())
            qFatal("no settings of that colour");
        entry.show(*widget, *settings);
    }
    /// Shows a picture until its preview is there.
    void ShowPicture() const
    {
        QSignalSpy ready(widget.get(), &YDAdjustmentWidget::ImageReady);
        widget->SetImage(TestPictures::Noise(20, 10), {}, {}, {});
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
        AwaitIdle();
    }
    void AwaitIdle() const { QTRY_VERIFY_WITH_TIMEOUT(!widget->IsProcessing(), PatienceMs); }
    /// Whether there was a change since the last preview; starts what waits for more changes.
    bool ComputesMore() const
    {
        widget->FlushPendingChange();
        return widget->IsProcessing();
    }

    const AdjustmentEntry& entry;
    const QString field;
    std::unique_ptr<YDTaskWidget> widget;
    QPushButton* const button;
    const std::unique_ptr<Announcements> changes;
};

} // namespace

/// What holds for every button that opens a colour dialog with a live preview.
class TestColorButtons : public QObject
{
    Q_OBJECT

private slots:
    void TheDialogIsFollowed_data() { AddWaysToClose(); }
    void TheDialogIsFollowed();
    void OnlyChangesComputeAPreview_data() { AddWaysToClose(); }
    void OnlyChangesComputeAPreview();
    void CancellingBringsTheOldPreviewBackOnce_data() { AddButtons(); }
    void CancellingBringsTheOldPreviewBackOnce();
    void AnAcceptedColourThatIsNotShownAnyMoreIsTaken_data() { AddButtons(); }
    void AnAcceptedColourThatIsNotShownAnyMoreIsTaken();
    void AHostileColourIsNoChangeOfItself_data();
    void AHostileColourIsNoChangeOfItself();
    void TheWidgetMayGoWhileTheDialogIsOpen_data() { AddButtons(); }
    void TheWidgetMayGoWhileTheDialogIsOpen();
    void TheButtonIsHeardOnceHoweverOftenSettingsWereShown_data() { AddButtons(); }
    void TheButtonIsHeardOnceHoweverOftenSettingsWereShown();

private:
    static void AddButtons();
    /// What is picked, how the dialog ends, how often a change is announced on the way and after it.
    static void AddWaysToClose();
    static const Button& TheButton()
    {
        QFETCH(int, button);
        return Buttons()[std::size_t(button)];
    }
};

void TestColorButtons::AddButtons()
{
    QTest::addColumn<int>("button");
    for (std::size_t i = 0; i < Buttons().size(); ++i)
        QTest::addRow("%s, %s", Buttons()[i].panel, Buttons()[i].field) << int(i);
}

void TestColorButtons::AddWaysToClose()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<Colors>("picks");
    QTest::addColumn<bool>("isAccepted");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    for (std::size_t i = 0; i < Buttons().size(); ++i) {
        const Button& button = Buttons()[i];
        const int accepting = button.isAcceptingAChange ? 1 : 0;
        const auto add = [&](const char* way, const Colors& picks, bool isAccepted, int before, int after) {
            QTest::addRow("%s, %s, %s", button.panel, button.field, way)
                << int(i) << picks << isAccepted << before << after;
        };
        add("accept changed", {Red, Blue}, true, 2, accepting);
        add("accept unchanged", {}, true, 0, accepting);
        add("cancel changed", {Red, Blue}, false, 2, 1);
        add("cancel unchanged", {}, false, 0, 0);
        add("the same colour twice", {Red, Red}, true, 1, accepting);
    }
}

void TestColorButtons::TheDialogIsFollowed()
{
    QFETCH(Colors, picks);
    QFETCH(bool, isAccepted);
    QFETCH(int, before);
    QFETCH(int, after);
    const Fixture f(TheButton());
    const QColor begin = f.Color();
    InTheDialog([&](KVColorDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QString::fromLatin1(TheButton().title));
        QCOMPARE(dialog.GetColor(), begin);
        QCOMPARE(dialog.parentWidget(), f.widget.get());
        for (const QColor& color : picks) {
            Pick(dialog, {color});
            QCOMPARE(f.Settings(), f.WithColor(color));
            QCOMPARE(PanelKit::SwatchOf(*f.button), color.rgba());
        }
        QCOMPARE(f.changes->Take(), Changes(before));
        Close(dialog, isAccepted);
    });
    f.button->click();
    QCOMPARE(f.changes->Take(), Changes(after));
    const QColor result = isAccepted && !picks.isEmpty() ? picks.last() : begin;
    QCOMPARE(f.Settings(), f.WithColor(result));
    QCOMPARE(PanelKit::SwatchOf(*f.button), result.rgba());
}

void TestColorButtons::OnlyChangesComputeAPreview()
{
    QFETCH(Colors, picks);
    QFETCH(bool, isAccepted);
    QFETCH(int, after);
    const Fixture f(TheButton());
    f.ShowPicture();
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, picks);
        QCOMPARE(f.ComputesMore(), !picks.isEmpty());
        f.AwaitIdle();
        Close(dialog, isAccepted);
    });
    f.button->click();
    QCOMPARE(f.ComputesMore(), after > 0);
}

void TestColorButtons::CancellingBringsTheOldPreviewBackOnce()
{
    const Fixture f(TheButton());
    f.ShowPicture();
    const RGBA32iImage before = f.widget->AdjustedImage();
    QSignalSpy ready(f.widget.get(), &YDAdjustmentWidget::ImageReady);
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, {Red});
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs); // the picture follows while it is open
        QVERIFY(!TestPictures::AreEqual(f.widget->AdjustedImage(), before));
        f.AwaitIdle();
        dialog.reject();
    });
    f.button->click();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
    QVERIFY(TestPictures::AreEqual(f.widget->AdjustedImage(), before));
    f.AwaitIdle();
    QVERIFY(!f.ComputesMore());
}

void TestColorButtons::AnAcceptedColourThatIsNotShownAnyMoreIsTaken()
{
    const Fixture f(TheButton());
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, {Red});
        QCOMPARE(f.changes->Take(), Changes(1));
        f.ShowColor(Blue); // a preset that is loaded meanwhile
        QCOMPARE(f.changes->Take(), QString());
        dialog.accept();
    });
    f.button->click();
    QCOMPARE(f.changes->Take(), Changes(1));
    QCOMPARE(f.Settings(), f.WithColor(Red));
}

void TestColorButtons::AHostileColourIsNoChangeOfItself_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<QByteArray>("stored");
    for (std::size_t i = 0; i < Buttons().size(); ++i) {
        QTest::addRow("%s, %s, no numbers", Buttons()[i].panel, Buttons()[i].field)
            << int(i) << TestColors::Stored(TestColors::NoNumbers());
        QTest::addRow("%s, %s, of no model", Buttons()[i].panel, Buttons()[i].field)
            << int(i) << TestColors::Stored(TestColors::OfNoModel());
    }
}

void TestColorButtons::AHostileColourIsNoChangeOfItself()
{
    QFETCH(QByteArray, stored);
    const Fixture f(TheButton());
    const auto settings = f.entry.makeSettings();
    const QByteArray preset = settings->ToPreset().replace(TestColors::Stored(f.Color()), stored);
    QVERIFY(preset != settings->ToPreset() && settings->FromPreset(preset));
    f.entry.show(*f.widget, *settings);
    for (const bool isAccepted : {false, true}) {
        InTheDialog([&](KVColorDialog& dialog) { Close(dialog, isAccepted); });
        f.button->click();
        QCOMPARE(f.changes->Take(), Changes(isAccepted && TheButton().isAcceptingAChange ? 1 : 0));
        QCOMPARE(f.entry.SettingsOf(*f.widget)->ToPreset(), preset);
    }
}

void TestColorButtons::TheWidgetMayGoWhileTheDialogIsOpen()
{
    Fixture f(TheButton());
    bool wasOpen = false;
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, {Red});
        wasOpen = true;
        f.widget.reset();
    });
    f.button->click();
    QVERIFY(wasOpen);
    QVERIFY(!f.widget);
    QVERIFY(!QApplication::activeModalWidget());
}

void TestColorButtons::TheButtonIsHeardOnceHoweverOftenSettingsWereShown()
{
    const Fixture f(TheButton());
    for (int times = 0; times < 3; ++times)
        f.ShowColor(Blue);
    QCOMPARE(f.changes->Take(), QString());
    InTheDialog([](KVColorDialog& dialog) {
        Pick(dialog, {Red});
        dialog.accept();
    });
    f.button->click();
    QCOMPARE(f.changes->Take(), Changes(TheButton().isAcceptingAChange ? 2 : 1));
    QCOMPARE(PanelKit::SwatchOf(*f.button), Red.rgba());
}

QTEST_MAIN(TestColorButtons)
#include "tst_ColorButtons.moc"
