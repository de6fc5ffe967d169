#include "AdjustmentProbe.h"
#include "Announcements.h"
#include "ColorDialogDriver.h"
#include "LoggedMessages.h"
#include "OverlayPanelChecks.h"
#include "TestColors.h"
#include "TestPictures.h"
#include "YDWatermarkWidget.h"
#include "gui/YDAngleSlider.h"
#include "gui/YDFontDialog.h"
#include "guicore/YDCommonComboBox.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include <functional>
#include <limits>
#include <memory>

using namespace AdjustmentProbe;
using Params = YDWatermarkWidget::Params;

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();

struct Fixture
{
    YDWatermarkWidget widget{nullptr, Qt::WindowFlags()};
    QLineEdit* text = Child<QLineEdit>(widget, "m_pText");
    QPushButton* color = Child<QPushButton>(widget, "m_pColor");
    QPushButton* font = Child<QPushButton>(widget, "m_pSelectFont");
    YDAngleSlider* dial = Child<YDAngleSlider>(widget, "m_pAngleSldr");
    QSpinBox* angle = Child<QSpinBox>(widget, "m_pAngleSpn");
    QSpinBox* left = Child<QSpinBox>(widget, "m_pLeftMargin");
    QSpinBox* top = Child<QSpinBox>(widget, "m_pTopMargin");
    QSpinBox* right = Child<QSpinBox>(widget, "m_pRightMargin");
    QSpinBox* bottom = Child<QSpinBox>(widget, "m_pBottomMargin");
    QSpinBox* across = Child<QSpinBox>(widget, "m_pHrzTiles");
    QSpinBox* down = Child<QSpinBox>(widget, "m_pVrtTiles");
    KVSlider* opacitySlider = Child<KVSlider>(widget, "m_pOpacitySlider");
    QSpinBox* opacity = Child<QSpinBox>(widget, "m_pOpacitySpn");
    YDCommonComboBox* blending = Child<YDCommonComboBox>(widget, "m_pBlendCombo");
    ::Announcements changes{widget};
};

/// What follows the font in the stream of the default record: white, normal, opaque, once.
QByteArray StoredTail(int blending = 0, int opacity = 100, int across = 1, int down = 1)
{
    return TestColors::Stored(QColor::Rgb, {0xffff, 0xffff, 0xffff, 0xffff, 0}) +
           Bytes("", {blending, opacity, across, down});
}

/// A font in the form that streams have since Qt 5.13.
QByteArray StoredFont(double points, qint32 pixels, const QString& family,
                      const QByteArray& families = QByteArray(4, '\0'))
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << family << QString() << points << pixels << quint8(5) << quint16(1) << quint8(0) << quint8(50)
           << quint8(16) << quint16(100) << quint8(0) << qint32(0) << qint32(0) << quint8(0) << quint8(0);
    return bytes + families;
}

template <class Field>
QByteArray AsQtStores(const Field& field)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << field;
    return bytes;
}

/// The record in the order of its stream, written by hand.
QByteArray Stored(int angle, std::initializer_list<qint32> margins, const QString& text,
                  const QByteArray& font, const QByteArray& tail)
{
    return Bytes("KVWatermark 1.00000", {angle}) + Bytes("", margins) + AsQtStores(text) + font + tail;
}

Params Sample()
{
    Params params;
    params.angle = -35;
    params.margins.setCoords(1, 22, 333, 999);
    params.text = QStringLiteral("\u00a9 me");
    params.font = QFont(QStringLiteral("No Such Family"), 40);
    params.color = QColor(10, 20, 30);
    params.blendingMode = 22;
    params.opacity = 40;
    params.hrzTiles = 3;
    params.vrtTiles = 4;
    return params;
}

/// Calls `act` with the font dialog that is open, in its event loop.
void InTheFontDialog(const std::function<void(YDFontDialog&)>& act)
{
    QTimer::singleShot(0, qApp, [act] {
        auto* const dialog = qobject_cast<YDFontDialog*>(QApplication::activeModalWidget());
        QVERIFY2(dialog, "no font dialog opened");
        const QPointer<YDFontDialog> open(dialog);
        act(*dialog);
        if (open && open->isVisible())
            open->reject();
    });
}

} // namespace

class TestYDWatermarkWidget : public QObject
{
    Q_OBJECT

private slots:

    void TheFormIsThatOfAWatermark();
    void TheSpinBoxesHaveTheirRanges_data();
    void TheSpinBoxesHaveTheirRanges();
    void TheLabelsAreRightAlignedInAirySpacedGrids();
    void TheMarginsLieAsTheyAre();
    void BeginsWithTheDefaults();
    void EachControlSetsItsField_data();
    void EachControlSetsItsField();
    void TypingSetsTheText();
    void PairedControlsFollowOneAnother();
    void BlendingModesGoRound_data() { OverlayPanelChecks::AddModes(); }
    void BlendingModesGoRound() { OverlayPanelChecks::BlendingModesGoRound<Fixture>(); }
    void AnIndexThatThereIsNotIsTheNormalMode()
    {
        OverlayPanelChecks::AnIndexThatThereIsNotIsTheNormalMode<Fixture>();
    }
    void AnUnknownModeStaysUntilAnotherIsChosen_data() { OverlayPanelChecks::AddUnknownModes(); }
    void AnUnknownModeStaysUntilAnotherIsChosen()
    {
        OverlayPanelChecks::AnUnknownModeStaysUntilAnotherIsChosen<Fixture>();
    }
    void MarginsAreFourNumbers() { OverlayPanelChecks::MarginsAreFourNumbers<Fixture>(); }
    void ShowingValuesAnnouncesNothing();
    void AChangeAfterShowingIsAnnouncedOnce();
    void ResetShowsTheDefaultsAndAnnouncesOnce();
    void TheRecordIsStoredInItsOrder();
    void WhatIsStoredIsRead();
    void AnyNumbersAreKept_data();
    void AnyNumbersAreKept();
    void AnyFontIsKept_data();
    void AnyFontIsKept();
    void AnyColourIsKept_data();
    void AnyColourIsKept();
    void ALongTextIsKept();
    void LengthsBeyondTheBytesThereFail_data();
    void LengthsBeyondTheBytesThereFail();
    void ACutRecordGivesDefaultsAndOneLine();
    void AnotherVersionIsRefused();
    void AWriteThatFailsIsLogged();
    void PickingAColourAnnouncesOnce_data();
    void PickingAColourAnnouncesOnce();
    void TheColourDialogIsAToolWindow();
    void PickingAFontAnnouncesOnce();
    void AcceptingTheFontAsItIsKeepsIt();
    void CancellingTheFontDialogChangesNothing();
    void TheWidgetMayGoWhileADialogIsOpen();
    void APictureStartsNothing() { OverlayPanelChecks::APictureStartsNothing<Fixture>(); }
    void ConvertingChangesNoPixel();
};

void TestYDWatermarkWidget::TheFormIsThatOfAWatermark()
{
    Fixture f;
    QCOMPARE(f.widget.windowTitle(), QStringLiteral("Watermark"));
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Watermark"));
    QCOMPARE(f.widget.size(), QSize(276, 371));
    QCOMPARE(f.opacitySlider->orientation(), Qt::Horizontal);
    QCOMPARE(f.opacitySlider->minimum(), 0);
    QCOMPARE(f.opacitySlider->maximum(), 100);
    QCOMPARE(f.text->text(), QStringLiteral("Watermark"));
    QVERIFY(f.color->text().isEmpty());
    QVERIFY(f.font->text().isEmpty());
    const QIcon letters(QStringLiteral("theme:text_settings.png"));
    QVERIFY(!letters.pixmap(16).isNull());
    QCOMPARE(f.font->icon().pixmap(16).toImage(), letters.pixmap(16).toImage());
    QCOMPARE(ColorDialogDriver::SwatchOf(*f.color), QColor(Qt::white).rgb());
    QCOMPARE(Child<QGroupBox>(f.widget, "groupBox")->title(), QStringLiteral("Alignment"));
    QCOMPARE(Child<QGroupBox>(f.widget, "groupBox_2")->title(), QStringLiteral("Blending"));
    QCOMPARE(f.blending->count(), 13);
    QCOMPARE(f.blending->maxVisibleItems(), 30);
    QCOMPARE(f.dial->minimum(), -179);
    QCOMPARE(f.dial->maximum(), 180);
    QVERIFY(!f.widget.findChild<QWidget*>(QStringLiteral("m_pButtons"))); // a panel, without a frame
}

void TestYDWatermarkWidget::TheSpinBoxesHaveTheirRanges_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("lowest");
    QTest::addColumn<int>("highest");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("across") << "m_pHrzTiles" << 1 << 9 << 1 << ""
                            << "";
    QTest::newRow("down") << "m_pVrtTiles" << 1 << 9 << 1 << ""
                          << "";
    QTest::newRow("angle") << "m_pAngleSpn" << -179 << 180 << 0 << "Set Angle"
                           << "\u00b0";
    QTest::newRow("top") << "m_pTopMargin" << 0 << 999 << 5 << "Set Top Margin"
                         << "";
    QTest::newRow("left") << "m_pLeftMargin" << 0 << 999 << 5 << "Set Left Margin"
                          << "";
    QTest::newRow("right") << "m_pRightMargin" << 0 << 999 << 5 << "Set Right Margin"
                           << "";
    QTest::newRow("bottom") << "m_pBottomMargin" << 0 << 999 << 5 << "Set Bottom Margin"
                            << "";
    QTest::newRow("opacity") << "m_pOpacitySpn" << 0 << 100 << 100 << ""
                             << "";
}

void TestYDWatermarkWidget::TheSpinBoxesHaveTheirRanges()
{
    QFETCH(QString, name);
    QFETCH(int, lowest);
    QFETCH(int, highest);
    QFETCH(int, value);
    QFETCH(QString, toolTip);
    QFETCH(QString, suffix);
    Fixture f;
    const auto* const box = Child<QSpinBox>(f.widget, qPrintable(name));
    QCOMPARE(box->minimum(), lowest);
    QCOMPARE(box->maximum(), highest);
    QCOMPARE(box->value(), value);
    QCOMPARE(box->toolTip(), toolTip);
    QCOMPARE(box->suffix(), suffix);
}

void TestYDWatermarkWidget::TheLabelsAreRightAlignedInAirySpacedGrids()
{
    Fixture f;
    const QVector<QPair<const char*, const char*>> labels{
        {"label", "Text:"},      {"label_8", "H. count:"}, {"label_9", "V. count:"}, {"label_7", "Angle:"},
        {"label_4", "Margins:"}, {"label_5", "Mode:"},     {"label_6", "Opacity:"}};
    for (const auto& [name, text] : labels) {
        const auto* const label = Child<QLabel>(f.widget, name);
        QCOMPARE(label->text(), QString::fromLatin1(text));
        QCOMPARE(label->alignment() & ~Qt::AlignAbsolute, Qt::AlignRight | Qt::AlignVCenter);
    }
    const auto grids = f.widget.findChildren<QGridLayout*>();
    QCOMPARE(grids.size(), 3);
    for (const QGridLayout* const grid : grids) {
        QCOMPARE(grid->verticalSpacing(), 9);
        QCOMPARE(grid->contentsMargins().top(), 12);
    }
}

void TestYDWatermarkWidget::TheMarginsLieAsTheyAre()
{
    Fixture f;
    f.widget.show();
    QVERIFY(f.top->geometry().bottom() < f.left->geometry().top());
    QVERIFY(f.left->geometry().right() < f.right->geometry().left());
    QCOMPARE(f.left->y(), f.right->y());
    QVERIFY(f.bottom->geometry().top() > f.left->geometry().bottom());
    QCOMPARE(f.top->x(), f.bottom->x());
}

void TestYDWatermarkWidget::BeginsWithTheDefaults()
{
    Fixture f;
    const Params params = f.widget.GetValue();
    QCOMPARE(params.angle, 0);
    QCOMPARE(params.margins, QRect(QPoint(5, 5), QPoint(5, 5)));
    QCOMPARE(params.text, QStringLiteral("Watermark"));
    QCOMPARE(params.font, QFont());
    QCOMPARE(params.color, QColor(Qt::white));
    QCOMPARE(params.blendingMode, 0);
    QCOMPARE(params.opacity, 100);
    QCOMPARE(params.hrzTiles, 1);
    QCOMPARE(params.vrtTiles, 1);
    QVERIFY(YDRecord::Equal(params, Params()));
    QCOMPARE(f.dial->value(), 0);
    QCOMPARE(f.opacitySlider->value(), 100);
    QCOMPARE(f.blending->currentText(), QStringLiteral("Normal"));
}

void TestYDWatermarkWidget::EachControlSetsItsField_data()
{
    const auto stored = [](int angle, std::initializer_list<qint32> margins, const QByteArray& tail) {
        return Stored(angle, margins, QStringLiteral("Watermark"), AsQtStores(QFont()), tail);
    };
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("angle") << "m_pAngleSpn" << 33 << stored(33, {5, 5, 5, 5}, StoredTail());
    QTest::newRow("dial") << "m_pAngleSldr" << -33 << stored(-33, {5, 5, 5, 5}, StoredTail());
    QTest::newRow("left") << "m_pLeftMargin" << 7 << stored(0, {7, 5, 5, 5}, StoredTail());
    QTest::newRow("top") << "m_pTopMargin" << 7 << stored(0, {5, 7, 5, 5}, StoredTail());
    QTest::newRow("right") << "m_pRightMargin" << 7 << stored(0, {5, 5, 7, 5}, StoredTail());
    QTest::newRow("bottom") << "m_pBottomMargin" << 7 << stored(0, {5, 5, 5, 7}, StoredTail());
    QTest::newRow("mode") << "m_pBlendCombo" << 12 << stored(0, {5, 5, 5, 5}, StoredTail(12));
    QTest::newRow("opacity") << "m_pOpacitySpn" << 30 << stored(0, {5, 5, 5, 5}, StoredTail(0, 30));
    QTest::newRow("opacity slider") << "m_pOpacitySlider" << 31 << stored(0, {5, 5, 5, 5}, StoredTail(0, 31));
    QTest::newRow("across") << "m_pHrzTiles" << 4 << stored(0, {5, 5, 5, 5}, StoredTail(0, 100, 4));
    QTest::newRow("down") << "m_pVrtTiles" << 4 << stored(0, {5, 5, 5, 5}, StoredTail(0, 100, 1, 4));
}

void TestYDWatermarkWidget::EachControlSetsItsField()
{
    QFETCH(QString, control);
    QFETCH(int, value);
    QFETCH(QByteArray, stored);
    Fixture f;
    auto* const child = Child<QWidget>(f.widget, qPrintable(control));
    const char* const property = qobject_cast<QComboBox*>(child) ? "currentIndex" : "value";
    QVERIFY(child->setProperty(property, value));
    QCOMPARE(f.changes.Take(), 1);
    QCOMPARE(Written(f.widget.GetValue()), stored);
    QVERIFY(child->setProperty(property, value)); // the same again
    QCOMPARE(f.changes.Take(), 0);
}

void TestYDWatermarkWidget::TypingSetsTheText()
{
    Fixture f;
    f.text->clear();
    QCOMPARE(f.changes.Take(), 1);
    QTest::keyClicks(f.text, QStringLiteral("abc"));
    QCOMPARE(f.widget.GetValue().text, QStringLiteral("abc"));
    QCOMPARE(f.changes.Take(), 3);
}

void TestYDWatermarkWidget::PairedControlsFollowOneAnother()
{
    Fixture f;
    f.angle->setValue(90);
    QCOMPARE(f.dial->value(), 90);
    f.dial->setValue(-45);
    QCOMPARE(f.angle->value(), -45);
    f.opacity->setValue(12);
    QCOMPARE(f.opacitySlider->value(), 12);
    f.opacitySlider->setValue(77);
    QCOMPARE(f.opacity->value(), 77);
    QCOMPARE(f.changes.Take(), 4);
}

void TestYDWatermarkWidget::ShowingValuesAnnouncesNothing()
{
    Fixture f;
    f.widget.SetValue(Sample());
    QCOMPARE(f.changes.Take(), 0);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Sample()));
    QCOMPARE(f.text->text(), Sample().text);
    QCOMPARE(f.angle->value(), -35);
    QCOMPARE(f.dial->value(), -35);
    QCOMPARE(f.left->value(), 1);
    QCOMPARE(f.top->value(), 22);
    QCOMPARE(f.right->value(), 333);
    QCOMPARE(f.bottom->value(), 999);
    QCOMPARE(ColorDialogDriver::SwatchOf(*f.color), QColor(10, 20, 30).rgb());
    QCOMPARE(f.blending->currentText(), QStringLiteral("Difference"));
    QCOMPARE(f.opacity->value(), 40);
    QCOMPARE(f.opacitySlider->value(), 40);
    QCOMPARE(f.across->value(), 3);
    QCOMPARE(f.down->value(), 4);
}

void TestYDWatermarkWidget::AChangeAfterShowingIsAnnouncedOnce()
{
    Fixture f;
    for (int round = 0; round < 3; ++round)
        f.widget.SetValue(Sample());
    f.left->setValue(8);
    f.dial->setValue(1);
    f.text->setText(QStringLiteral("x"));
    f.blending->setCurrentIndex(0);
    f.across->setValue(9);
    f.down->setValue(9);
    QCOMPARE(f.changes.Take(), 6);
}

void TestYDWatermarkWidget::ResetShowsTheDefaultsAndAnnouncesOnce()
{
    Fixture f;
    f.widget.SetValue(Sample());
    f.widget.Reset();
    QCOMPARE(f.changes.Take(), 1);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
    QCOMPARE(f.text->text(), QStringLiteral("Watermark"));
    QCOMPARE(f.dial->value(), 0);
    QCOMPARE(f.opacity->value(), 100);
    QCOMPARE(ColorDialogDriver::SwatchOf(*f.color), QColor(Qt::white).rgb());
    f.widget.Reset(); // nothing to change is announced as well
    QCOMPARE(f.changes.Take(), 1);
}

void TestYDWatermarkWidget::TheRecordIsStoredInItsOrder()
{
    const QByteArray color = TestColors::Stored(QColor::Rgb, {0xffff, 0x0a0a, 0x1414, 0x1e1e, 0});
    QCOMPARE(Written(Sample()), Stored(-35, {1, 22, 333, 999}, Sample().text, AsQtStores(Sample().font),
                                       color + Bytes("", {22, 40, 3, 4})));
    QCOMPARE(Written(Params()).left(19 + 20),
             QByteArray("KVWatermark 1.00000") + QByteArray::fromHex("00000000"
                                                                     "00000005000000050000000500000005"));
}

void TestYDWatermarkWidget::WhatIsStoredIsRead()
{
    QDataStream stream(Written(Sample()));
    Params params;
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Sample()));
    QVERIFY(stream.atEnd());
}

void TestYDWatermarkWidget::AnyNumbersAreKept_data()
{
    QTest::addColumn<int>("number");
    for (const int number : {Lowest, -180, 0, 181, Highest})
        QTest::newRow(qPrintable(QString::number(number))) << number;
}

void TestYDWatermarkWidget::AnyNumbersAreKept()
{
    QFETCH(int, number);
    const int opposite = number == Highest ? Lowest : Highest;
    const QByteArray bytes = Stored(number, {opposite, number, number, opposite}, QStringLiteral("x"),
                                    AsQtStores(QFont()), StoredTail(number, number, number, opposite));
    QDataStream stream(bytes);
    Params params;
    QVERIFY(params.Read(stream));
    Fixture f;
    f.widget.SetValue(params);
    QCOMPARE(Written(f.widget.GetValue()), bytes);
    QCOMPARE(f.angle->value(), qBound(-179, number, 180));
    QCOMPARE(f.dial->value(), f.angle->value());
    QCOMPARE(f.left->value(), qBound(0, opposite, 999));
    QCOMPARE(f.across->value(), qBound(1, number, 9));
    QCOMPARE(f.opacitySlider->value(), qBound(0, number, 100));
    f.right->setValue(f.right->value() == 17 ? 18 : 17); // one edge, the others stay
    QCOMPARE(f.widget.GetValue().margins.left(), opposite);
    QCOMPARE(f.changes.Take(), 1);
}

void TestYDWatermarkWidget::AnyFontIsKept_data()
{
    QTest::addColumn<QByteArray>("font");
    const QString none = QStringLiteral("No Such Family");
    QTest::newRow("not installed") << StoredFont(12, -1, none);
    QTest::newRow("without a name") << StoredFont(12, -1, QString());
    QTest::newRow("no number") << StoredFont(NoNumber, -1, none);
    QTest::newRow("infinite") << StoredFont(Infinity, -1, none);
    QTest::newRow("negative infinite") << StoredFont(-Infinity, -1, none);
    QTest::newRow("huge") << StoredFont(1e308, Highest, none);
    QTest::newRow("without a size") << StoredFont(0, 0, none);
    QTest::newRow("negative") << StoredFont(-1e9, Lowest, none);
    QTest::newRow("ten million letters") << StoredFont(12, -1, QString(10'000'000, QLatin1Char('n')));
    QTest::newRow("several families") << StoredFont(12, -1, none,
                                                    QByteArray::fromHex("00000002"
                                                                        "000000020041"
                                                                        "ffffffff"));
}

void TestYDWatermarkWidget::AnyFontIsKept()
{
    QFETCH(QByteArray, font);
    const QByteArray bytes = Stored(0, {5, 5, 5, 5}, QStringLiteral("x"), font, StoredTail());
    QDataStream stream(bytes);
    Params params;
    QVERIFY(params.Read(stream));
    QVERIFY(stream.atEnd());
    Fixture f;
    f.widget.SetValue(params);
    QVERIFY(Written(f.widget.GetValue()) == bytes);
    InTheFontDialog([](YDFontDialog& dialog) { dialog.accept(); });
    f.font->click();
    QVERIFY(Written(f.widget.GetValue()) == bytes);
}

void TestYDWatermarkWidget::AnyColourIsKept_data()
{
    QTest::addColumn<QColor>("color");
    QTest::newRow("none") << QColor();
    QTest::newRow("no numbers") << TestColors::NoNumbers();
    QTest::newRow("far out") << TestColors::FarOut();
    QTest::newRow("no model there is") << TestColors::OfNoModel();
    QTest::newRow("another model") << QColor::fromCmyk(1, 2, 3, 4, 5);
}

void TestYDWatermarkWidget::AnyColourIsKept()
{
    QFETCH(QColor, color);
    Params params;
    params.color = color;
    const QByteArray bytes = Written(params);
    QDataStream stream(bytes);
    QVERIFY(params.Read(stream));
    Fixture f;
    f.widget.SetValue(params);
    QCOMPARE(Written(f.widget.GetValue()), bytes);
}

void TestYDWatermarkWidget::ALongTextIsKept()
{
    const QString text(10'000'000, QChar(0x4e2d));
    QDataStream stream(Stored(0, {5, 5, 5, 5}, text, AsQtStores(QFont()), StoredTail()));
    Params params;
    stream >> params;
    QVERIFY(params.text == text);
    Fixture f;
    f.widget.SetValue(params);
    QVERIFY(f.widget.GetValue().text == text);
    f.opacity->setValue(1);
    QVERIFY(f.widget.GetValue().text == text);
    QCOMPARE(f.changes.Take(), 1);
}

void TestYDWatermarkWidget::LengthsBeyondTheBytesThereFail_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<QByteArray>("length");
    constexpr int TextLength = 19 + 20;
    constexpr int FamilyLength = TextLength + 4 + 2;
    const int familyCount = FamilyLength + StoredFont(12, -1, QStringLiteral("F")).size() - 4;
    for (const char* const length :
         {"fffffffe", "fffffffd", "80000000", "7ffffffe", "10000000", "00100000"}) {
        const QByteArray bytes = QByteArray::fromHex(length);
        QTest::newRow(qPrintable(QStringLiteral("text ") + QLatin1String(length))) << TextLength << bytes;
        QTest::newRow(qPrintable(QStringLiteral("family ") + QLatin1String(length))) << FamilyLength << bytes;
        QTest::newRow(qPrintable(QStringLiteral("families ") + QLatin1String(length)))
            << familyCount << bytes;
    }
}

void TestYDWatermarkWidget::LengthsBeyondTheBytesThereFail()
{
    QFETCH(int, place);
    QFETCH(QByteArray, length);
    QByteArray bytes =
        Stored(0, {5, 5, 5, 5}, QStringLiteral("x"), StoredFont(12, -1, QStringLiteral("F")), StoredTail());
    QDataStream whole(bytes);
    Params params;
    QVERIFY(params.Read(whole));
    bytes.replace(place, 4, length);
    QDataStream stream(bytes);
    QVERIFY(!params.Read(stream));
    QDataStream again(bytes);
    again >> params;
    QVERIFY(YDRecord::Equal(params, Params()));
}

void TestYDWatermarkWidget::ACutRecordGivesDefaultsAndOneLine()
{
    const QByteArray whole = Written(Sample());
    for (int length = 0; length < whole.size(); ++length) {
        const LoggedMessages logged(QtDebugMsg);
        QDataStream stream(whole.left(length));
        Params params = Sample();
        stream >> params;
        QVERIFY2(YDRecord::Equal(params, Params()), qPrintable(QString::number(length)));
        QCOMPARE(logged.All(),
                 QStringList{QStringLiteral("[src/YDWatermarkWidget:535] Read watermark data error.")});
    }
}

void TestYDWatermarkWidget::AnotherVersionIsRefused()
{
    QByteArray bytes = Written(Sample());
    bytes.replace("1.00000", "1.00001");
    QDataStream stream(bytes);
    Params params = Sample();
    QVERIFY(!params.Read(stream));
    QVERIFY(YDRecord::Equal(params, Sample())); // untouched
}

void TestYDWatermarkWidget::AWriteThatFailsIsLogged()
{
    const LoggedMessages logged(QtDebugMsg);
    QDataStream stream(QByteArray(100, 'x'));
    stream << Params();
    QCOMPARE(logged.All(),
             QStringList{QStringLiteral("[src/YDWatermarkWidget:522] Write watermark data error.")});
}

void TestYDWatermarkWidget::PickingAColourAnnouncesOnce_data()
{
    QTest::addColumn<bool>("isAccepted");
    QTest::newRow("accepted") << true;
    QTest::newRow("cancelled") << false;
}

void TestYDWatermarkWidget::PickingAColourAnnouncesOnce()
{
    QFETCH(bool, isAccepted);
    Fixture f;
    f.widget.SetValue(Sample());
    const QColor picked(200, 100, 50);
    ColorDialogDriver::InTheDialog([&](KVColorDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Select text color"));
        QCOMPARE(dialog.GetColor(), Sample().color);
        ColorDialogDriver::Pick(dialog, {picked});
        QCOMPARE(f.changes.Take(), 0); // no preview
        ColorDialogDriver::Close(dialog, isAccepted);
    });
    f.color->click();
    QCOMPARE(f.widget.GetValue().color, isAccepted ? picked : Sample().color);
    QCOMPARE(ColorDialogDriver::SwatchOf(*f.color), f.widget.GetValue().color.rgb());
    QCOMPARE(f.changes.Take(), isAccepted ? 1 : 0);
}

void TestYDWatermarkWidget::TheColourDialogIsAToolWindow()
{
    Fixture f;
    ColorDialogDriver::InTheDialog([&f](KVColorDialog& dialog) {
        QCOMPARE(int(dialog.windowType()), 11);
        QCOMPARE(dialog.parentWidget(), &f.widget);
    });
    f.color->click();
}

void TestYDWatermarkWidget::PickingAFontAnnouncesOnce()
{
    Fixture f;
    QFont picked = QFont();
    picked.setUnderline(!picked.underline());
    InTheFontDialog([&](YDFontDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Font parameters"));
        QCOMPARE(int(dialog.windowType()), 11);
        QCOMPARE(dialog.parentWidget(), &f.widget);
        dialog.setCurrentFont(picked);
        picked = dialog.currentFont();
        QCOMPARE(f.changes.Take(), 0);
        dialog.accept();
    });
    f.font->click();
    QCOMPARE(f.widget.GetValue().font, picked);
    QVERIFY(f.widget.GetValue().font.underline());
    QCOMPARE(f.changes.Take(), 1);
    QVERIFY(!f.widget.findChild<YDFontDialog*>());
}

void TestYDWatermarkWidget::AcceptingTheFontAsItIsKeepsIt()
{
    Fixture f;
    f.widget.SetValue(Sample());
    InTheFontDialog([](YDFontDialog& dialog) { dialog.accept(); });
    f.font->click();
    QCOMPARE(f.widget.GetValue().font, Sample().font);
    QCOMPARE(f.changes.Take(), 1);
}

void TestYDWatermarkWidget::CancellingTheFontDialogChangesNothing()
{
    Fixture f;
    f.widget.SetValue(Sample());
    InTheFontDialog([](YDFontDialog& dialog) {
        dialog.setCurrentFont(QFont());
        dialog.reject();
    });
    f.font->click();
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Sample()));
    QCOMPARE(f.changes.Take(), 0);
}

void TestYDWatermarkWidget::TheWidgetMayGoWhileADialogIsOpen()
{
    auto widget = std::make_unique<YDWatermarkWidget>(nullptr, Qt::WindowFlags());
    InTheFontDialog([&widget](YDFontDialog&) { widget.reset(); });
    widget->OnSelectFont();
    QVERIFY(!widget);
    widget = std::make_unique<YDWatermarkWidget>(nullptr, Qt::WindowFlags());
    ColorDialogDriver::InTheDialog([&widget](KVColorDialog&) { widget.reset(); });
    widget->OnSelectColor();
    QVERIFY(!widget);
}

void TestYDWatermarkWidget::ConvertingChangesNoPixel()
{
    Fixture f;
    f.widget.SetValue(Sample());
    const RGBA32iImage source = TestPictures::Noise(40, 30);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), source));
}

QTEST_MAIN(TestYDWatermarkWidget)
#include "tst_YDWatermarkWidget.moc"
