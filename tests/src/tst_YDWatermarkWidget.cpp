#include "DialogDriver.h"
#include "OverlayPanelChecks.h"
#include "PanelKit.h"
#include "TestColors.h"
#include "TestPictures.h"
#include "YDWatermarkWidget.h"
#include "gui/YDAngleSlider.h"
#include "gui/YDFontDialog.h"
#include "guicore/YDCommonComboBox.h"
#include "widgets/KVSlider.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

#include <limits>
#include <memory>

using Params = YDWatermarkWidget::Params;

namespace {

using namespace PanelKit;
using namespace DialogDriver;

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
    Announcements changes{widget};
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

} // namespace

class TestYDWatermarkWidget : public QObject
{
    Q_OBJECT

private slots:
    void TheButtonsShowLettersAndTheColour();
    void TheMarginsLieAsTheyAre() { OverlayPanelChecks::TheMarginsLieAsTheyAre<Fixture>(); }
    void TypingSetsTheText();
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
    void AnyNumbersAreKept_data();
    void AnyNumbersAreKept();
    void AnyFontIsKept_data();
    void AnyFontIsKept();
    void AnyColourIsKept_data();
    void AnyColourIsKept();
    void ALongTextIsKept();
    void LengthsBeyondTheBytesThereFail_data();
    void LengthsBeyondTheBytesThereFail();
    void PickingAColourAnnouncesOnce_data();
    void PickingAColourAnnouncesOnce();
    void TheColourDialogIsAToolWindow();
    void PickingAFontAnnouncesOnce();
    void AcceptingTheFontAsItIsKeepsIt();
    void CancellingTheFontDialogChangesNothing();
    void TheWidgetMayGoWhileADialogIsOpen();
    void APictureStartsNothing() { OverlayPanelChecks::APictureStartsNothing<Fixture>(); }
};

void TestYDWatermarkWidget::TheButtonsShowLettersAndTheColour()
{
    const Fixture f;
    const QIcon letters(QStringLiteral("theme:text_settings.png"));
    QVERIFY(!letters.pixmap(16).isNull());
    QCOMPARE(f.font->icon().pixmap(16).toImage(), letters.pixmap(16).toImage());
    QCOMPARE(SwatchOf(*f.color), QColor(Qt::white).rgb());
}

void TestYDWatermarkWidget::TypingSetsTheText()
{
    Fixture f;
    f.text->clear();
    QCOMPARE(f.changes.Take(), OneChange());
    QTest::keyClicks(f.text, QStringLiteral("abc"));
    QCOMPARE(f.widget.GetValue().text, QStringLiteral("abc"));
    QCOMPARE(f.changes.Take(), Changes(3));
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
    QCOMPARE(f.changes.Take(), OneChange());
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
    InTheDialog<YDFontDialog>([](YDFontDialog& dialog) { dialog.accept(); });
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
    QCOMPARE(f.changes.Take(), OneChange());
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
    InTheDialog([&](KVColorDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Select text color"));
        QCOMPARE(dialog.GetColor(), Sample().color);
        Pick(dialog, {picked});
        QCOMPARE(f.changes.Take(), QString()); // no preview
        Close(dialog, isAccepted);
    });
    f.color->click();
    QCOMPARE(f.widget.GetValue().color, isAccepted ? picked : Sample().color);
    QCOMPARE(SwatchOf(*f.color), f.widget.GetValue().color.rgb());
    QCOMPARE(f.changes.Take(), Changes(isAccepted ? 1 : 0));
}

void TestYDWatermarkWidget::TheColourDialogIsAToolWindow()
{
    Fixture f;
    InTheDialog([&f](KVColorDialog& dialog) {
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
    InTheDialog<YDFontDialog>([&](YDFontDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Font parameters"));
        QCOMPARE(int(dialog.windowType()), 11);
        QCOMPARE(dialog.parentWidget(), &f.widget);
        dialog.setCurrentFont(picked);
        picked = dialog.currentFont();
        QCOMPARE(f.changes.Take(), QString());
        dialog.accept();
    });
    f.font->click();
    QCOMPARE(f.widget.GetValue().font, picked);
    QVERIFY(f.widget.GetValue().font.underline());
    QCOMPARE(f.changes.Take(), OneChange());
    QVERIFY(!f.widget.findChild<YDFontDialog*>());
}

void TestYDWatermarkWidget::AcceptingTheFontAsItIsKeepsIt()
{
    Fixture f;
    f.widget.SetValue(Sample());
    InTheDialog<YDFontDialog>([](YDFontDialog& dialog) { dialog.accept(); });
    f.font->click();
    QCOMPARE(f.widget.GetValue().font, Sample().font);
    QCOMPARE(f.changes.Take(), OneChange());
}

void TestYDWatermarkWidget::CancellingTheFontDialogChangesNothing()
{
    Fixture f;
    f.widget.SetValue(Sample());
    InTheDialog<YDFontDialog>([](YDFontDialog& dialog) {
        dialog.setCurrentFont(QFont());
        dialog.reject();
    });
    f.font->click();
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Sample()));
    QCOMPARE(f.changes.Take(), QString());
}

void TestYDWatermarkWidget::TheWidgetMayGoWhileADialogIsOpen()
{
    auto widget = std::make_unique<YDWatermarkWidget>(nullptr, Qt::WindowFlags());
    InTheDialog<YDFontDialog>([&widget](YDFontDialog&) { widget.reset(); });
    widget->OnSelectFont();
    QVERIFY(!widget);
    widget = std::make_unique<YDWatermarkWidget>(nullptr, Qt::WindowFlags());
    InTheDialog([&widget](KVColorDialog&) { widget.reset(); });
    widget->OnSelectColor();
    QVERIFY(!widget);
}

QTEST_MAIN(TestYDWatermarkWidget)
#include "tst_YDWatermarkWidget.moc"
