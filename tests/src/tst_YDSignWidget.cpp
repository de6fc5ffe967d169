#include "AdjustmentProbe.h"
#include "Announcements.h"
#include "LoggedMessages.h"
#include "OverlayPanelChecks.h"
#include "TestPictures.h"
#include "YDSignWidget.h"
#include "core/KVApplication.h"
#include "core/KVImageFileManager.h"
#include "guicore/YDCommonComboBox.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QFile>
#include <QFileDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>
#include <limits>
#include <memory>

using namespace AdjustmentProbe;
using Params = YDSignWidget::Params;

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();

QString& ReadableKinds()
{
    static QString filter = QStringLiteral("Pictures (*.png)");
    return filter;
}

struct Fixture
{
    YDSignWidget widget{nullptr, Qt::WindowFlags()};
    QLineEdit* fileName = Child<QLineEdit>(widget, "m_pImageFileName");
    QPushButton* select = Child<QPushButton>(widget, "m_pSelectAnImage");
    YDCommonComboBox* horizontal = Child<YDCommonComboBox>(widget, "m_pHrzAlignment");
    YDCommonComboBox* vertical = Child<YDCommonComboBox>(widget, "m_pVrtAlignment");
    KVSpinBox* left = Child<KVSpinBox>(widget, "m_pLeftMargin");
    KVSpinBox* top = Child<KVSpinBox>(widget, "m_pTopMargin");
    KVSpinBox* right = Child<KVSpinBox>(widget, "m_pRightMargin");
    KVSpinBox* bottom = Child<KVSpinBox>(widget, "m_pBottomMargin");
    KVSlider* opacitySlider = Child<KVSlider>(widget, "m_pOpacitySlider");
    KVSpinBox* opacity = Child<KVSpinBox>(widget, "m_pOpacitySpn");
    YDCommonComboBox* blending = Child<YDCommonComboBox>(widget, "m_pBlendCombo");
    ::Announcements changes{widget};
};

/// The record in the order of its stream, written by hand.
QByteArray Stored(int alignment, std::initializer_list<qint32> margins, const QString& fileName, int blending,
                  int opacity)
{
    QByteArray bytes = "KVSign 1.00000";
    QDataStream stream(&bytes, QIODevice::WriteOnly | QIODevice::Append);
    stream << qint32(alignment);
    for (const qint32 margin : margins)
        stream << margin;
    stream << fileName << qint32(blending) << qint32(opacity);
    return bytes;
}

Params Sample()
{
    Params params;
    params.alignment = Qt::AlignRight | Qt::AlignBottom;
    params.fileName = QStringLiteral("/stamps/seal.png");
    params.margins.setCoords(1, 22, 333, 999);
    params.blendingMode = 13;
    params.opacity = 40;
    return params;
}

/// Calls `act` with the file dialog that is open, in its event loop.
void InTheDialog(const std::function<void(QFileDialog&)>& act)
{
    QTimer::singleShot(0, qApp, [act] {
        auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        QVERIFY2(dialog, "no file dialog opened");
        const QPointer<QFileDialog> open(dialog);
        act(*dialog);
        if (open && open->isVisible())
            open->reject();
    });
}

void Choose(QFileDialog& dialog, const QString& file)
{
    dialog.selectFile(file);
    static_cast<QDialog&>(dialog).done(QDialog::Accepted);
}

} // namespace

/// Stands in for the host's, whose kinds of pictures are those of the machine.
QString KVImageFileManager::GetFilterForRead() { return ReadableKinds(); }

class TestYDSignWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void TheFormIsThatOfAStamp();
    void TheListsHaveTheirItems();
    void TheSpinBoxesHaveTheirRanges_data();
    void TheSpinBoxesHaveTheirRanges();
    void TheMarginsLieAsTheyAre();
    void BeginsWithTheDefaults();
    void EachControlSetsItsField_data();
    void EachControlSetsItsField();
    void TheOpacitysSliderAndSpinBoxFollowOneAnother();
    void AlignmentsReplaceOneDirectionOnly_data();
    void AlignmentsReplaceOneDirectionOnly();
    void AlignmentsAreShown_data();
    void AlignmentsAreShown();
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
    void ALongFileNameIsKept();
    void ALengthBeyondTheBytesThereFails();
    void ACutRecordGivesDefaultsAndOneLine();
    void AnotherVersionIsRefused();
    void AWriteThatFailsIsLogged();
    void ChoosingAFileSetsItsName();
    void CancellingTheFileDialogChangesNothing();
    void TheFileDialogBeginsWhereTheLastFileIs();
    void TheFileDialogBeginsWhereTheHostWasLast();
    void WithoutReadablePicturesThereIsNoFileDialog();
    void TheWidgetMayGoWhileTheFileDialogIsOpen();
    void APictureStartsNothing() { OverlayPanelChecks::APictureStartsNothing<Fixture>(); }
    void ConvertingChangesNoPixel();
};

void TestYDSignWidget::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_YDSignWidget"));
}

void TestYDSignWidget::init() { ReadableKinds() = QStringLiteral("Pictures (*.png)"); }

void TestYDSignWidget::TheFormIsThatOfAStamp()
{
    Fixture f;
    QCOMPARE(f.widget.windowTitle(), QStringLiteral("Sign"));
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Sign"));
    QCOMPARE(f.widget.size(), QSize(275, 333));
    QCOMPARE(f.opacitySlider->orientation(), Qt::Horizontal);
    QCOMPARE(f.opacitySlider->minimum(), 0);
    QCOMPARE(f.opacitySlider->maximum(), 100);
    QVERIFY(f.fileName->isReadOnly());
    QVERIFY(f.fileName->text().isEmpty());
    QCOMPARE(f.select->toolTip(), QStringLiteral("Choose an image..."));
    QVERIFY(!f.select->icon().isNull());
    QCOMPARE(Child<QGroupBox>(f.widget, "groupBox")->title(), QStringLiteral("Alignment"));
    QCOMPARE(Child<QGroupBox>(f.widget, "groupBox_2")->title(), QStringLiteral("Blending"));
    const QVector<QPair<const char*, const char*>> labels{
        {"label", "Sign image:"}, {"label_2", "Horizontal:"}, {"label_3", "Vertical:"},
        {"label_8", "Margins:"},  {"label_6", "Opacity:"},    {"label_5", "Mode:"}};
    for (const auto& [name, text] : labels)
        QCOMPARE(Child<QLabel>(f.widget, name)->text(), QString::fromLatin1(text));
    QVERIFY(!f.widget.findChild<QWidget*>(QStringLiteral("m_pButtons"))); // a panel, without a frame
}

void TestYDSignWidget::TheListsHaveTheirItems()
{
    Fixture f;
    const auto items = [](const QComboBox& box) {
        QStringList all;
        for (int i = 0; i < box.count(); ++i)
            all.append(box.itemText(i));
        return all;
    };
    QCOMPARE(items(*f.horizontal), QStringList({"Left", "Center", "Right"}));
    QCOMPARE(items(*f.vertical), QStringList({"Top", "Center", "Bottom"}));
    QCOMPARE(f.horizontal->toolTip(), QStringLiteral("Set Horizontal Alignment"));
    QCOMPARE(f.vertical->toolTip(), QStringLiteral("Set Vertical Alignment"));
    QCOMPARE(f.blending->count(), 13);
    QCOMPARE(f.blending->currentText(), QStringLiteral("Normal"));
}

void TestYDSignWidget::TheSpinBoxesHaveTheirRanges_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("highest");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("top") << "m_pTopMargin" << 999 << 5 << "Set Top Margin"
                         << "";
    QTest::newRow("left") << "m_pLeftMargin" << 999 << 5 << "Set Left Margin"
                          << "";
    QTest::newRow("right") << "m_pRightMargin" << 999 << 5 << "Set Right Margin"
                           << "";
    QTest::newRow("bottom") << "m_pBottomMargin" << 999 << 5 << "Set Bottom Margin"
                            << "";
    QTest::newRow("opacity") << "m_pOpacitySpn" << 100 << 100 << ""
                             << "%";
}

void TestYDSignWidget::TheSpinBoxesHaveTheirRanges()
{
    QFETCH(QString, name);
    QFETCH(int, highest);
    QFETCH(int, value);
    QFETCH(QString, toolTip);
    QFETCH(QString, suffix);
    Fixture f;
    const auto* const box = Child<KVSpinBox>(f.widget, qPrintable(name));
    QCOMPARE(box->minimum(), 0);
    QCOMPARE(box->maximum(), highest);
    QCOMPARE(box->value(), value);
    QCOMPARE(box->toolTip(), toolTip);
    QCOMPARE(box->suffix(), suffix);
}

void TestYDSignWidget::TheMarginsLieAsTheyAre()
{
    Fixture f;
    f.widget.show();
    QVERIFY(f.top->geometry().bottom() < f.left->geometry().top());
    QVERIFY(f.left->geometry().right() < f.right->geometry().left());
    QCOMPARE(f.left->y(), f.right->y());
    QVERIFY(f.bottom->geometry().top() > f.left->geometry().bottom());
    QCOMPARE(f.top->x(), f.bottom->x());
}

void TestYDSignWidget::BeginsWithTheDefaults()
{
    Fixture f;
    const Params params = f.widget.GetValue();
    QCOMPARE(int(params.alignment), 33);
    QCOMPARE(params.fileName, QString());
    QCOMPARE(params.margins, QRect(QPoint(5, 5), QPoint(5, 5)));
    QCOMPARE(params.blendingMode, 0);
    QCOMPARE(params.opacity, 100);
    QVERIFY(YDRecord::Equal(params, Params()));
    QCOMPARE(f.horizontal->currentText(), QStringLiteral("Left"));
    QCOMPARE(f.vertical->currentText(), QStringLiteral("Top"));
    QCOMPARE(f.opacitySlider->value(), 100);
}

void TestYDSignWidget::EachControlSetsItsField_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("horizontal") << "m_pHrzAlignment" << 2 << Stored(34, {5, 5, 5, 5}, {}, 0, 100);
    QTest::newRow("vertical") << "m_pVrtAlignment" << 2 << Stored(65, {5, 5, 5, 5}, {}, 0, 100);
    QTest::newRow("left") << "m_pLeftMargin" << 7 << Stored(33, {7, 5, 5, 5}, {}, 0, 100);
    QTest::newRow("top") << "m_pTopMargin" << 7 << Stored(33, {5, 7, 5, 5}, {}, 0, 100);
    QTest::newRow("right") << "m_pRightMargin" << 7 << Stored(33, {5, 5, 7, 5}, {}, 0, 100);
    QTest::newRow("bottom") << "m_pBottomMargin" << 7 << Stored(33, {5, 5, 5, 7}, {}, 0, 100);
    QTest::newRow("opacity") << "m_pOpacitySpn" << 30 << Stored(33, {5, 5, 5, 5}, {}, 0, 30);
    QTest::newRow("opacity slider") << "m_pOpacitySlider" << 30 << Stored(33, {5, 5, 5, 5}, {}, 0, 30);
    QTest::newRow("mode") << "m_pBlendCombo" << 3 << Stored(33, {5, 5, 5, 5}, {}, 15, 100);
}

void TestYDSignWidget::EachControlSetsItsField()
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

void TestYDSignWidget::TheOpacitysSliderAndSpinBoxFollowOneAnother()
{
    Fixture f;
    f.opacity->setValue(12);
    QCOMPARE(f.opacitySlider->value(), 12);
    f.opacitySlider->setValue(77);
    QCOMPARE(f.opacity->value(), 77);
    QCOMPARE(f.changes.Take(), 2);
}

void TestYDSignWidget::AlignmentsReplaceOneDirectionOnly_data()
{
    QTest::addColumn<bool>("isHorizontal");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("after");
    QTest::newRow("centre across") << true << 33 << 1 << 36;
    QTest::newRow("right") << true << 33 << 2 << 34;
    QTest::newRow("left") << true << 34 << 0 << 33;
    QTest::newRow("centre down") << false << 33 << 1 << 129;
    QTest::newRow("bottom") << false << 33 << 2 << 65;
    QTest::newRow("top") << false << 65 << 0 << 33;
    QTest::newRow("no item across") << true << 34 << 3 << 33;
    QTest::newRow("before the items across") << true << 36 << -1 << 33;
    QTest::newRow("no item down") << false << 65 << 3 << 33;
    QTest::newRow("before the items down") << false << 129 << Lowest << 33;
    QTest::newRow("every flag, across") << true << -1 << 1 << int(0xffffffe4);
    QTest::newRow("every flag, down") << false << -1 << 1 << int(0xfffffe9f);
    QTest::newRow("no flag, across") << true << 0 << 2 << 2;
    QTest::newRow("no flag, down") << false << 0 << Highest << 32;
}

void TestYDSignWidget::AlignmentsReplaceOneDirectionOnly()
{
    QFETCH(bool, isHorizontal);
    QFETCH(int, before);
    QFETCH(int, index);
    QFETCH(int, after);
    Fixture f;
    Params params;
    params.alignment = Qt::Alignment(QFlag(before));
    f.widget.SetValue(params);
    if (isHorizontal)
        f.widget.OnHorizontalAlignmentChanged(index);
    else
        f.widget.OnVerticalAlignmentChanged(index);
    QCOMPARE(int(f.widget.GetValue().alignment), after);
    QCOMPARE(f.changes.Take(), 1);
}

void TestYDSignWidget::AlignmentsAreShown_data()
{
    QTest::addColumn<int>("alignment");
    QTest::addColumn<int>("horizontal");
    QTest::addColumn<int>("vertical");
    QTest::newRow("left, top") << 0x21 << 0 << 0;
    QTest::newRow("right, bottom") << 0x42 << 2 << 2;
    QTest::newRow("centre") << 0x84 << 1 << 1;
    QTest::newRow("none") << 0 << 0 << 0;
    QTest::newRow("all") << -1 << 0 << 0;
    QTest::newRow("right and centre across") << 0x26 << 1 << 0;
    QTest::newRow("left and right") << 0x23 << 0 << 0;
    QTest::newRow("bottom and centre down") << 0xc1 << 0 << 1;
    QTest::newRow("top and bottom") << 0x61 << 0 << 0;
    QTest::newRow("justified, at the base line") << 0x108 << 0 << 0;
    QTest::newRow("lowest") << Lowest << 0 << 0;
}

void TestYDSignWidget::AlignmentsAreShown()
{
    QFETCH(int, alignment);
    QFETCH(int, horizontal);
    QFETCH(int, vertical);
    Fixture f;
    f.horizontal->setCurrentIndex(1);
    f.vertical->setCurrentIndex(1);
    Params params;
    params.alignment = Qt::Alignment(QFlag(alignment));
    f.widget.SetValue(params);
    QCOMPARE(f.horizontal->currentIndex(), horizontal);
    QCOMPARE(f.vertical->currentIndex(), vertical);
    QCOMPARE(int(f.widget.GetValue().alignment), alignment);
}

void TestYDSignWidget::ShowingValuesAnnouncesNothing()
{
    Fixture f;
    f.widget.SetValue(Sample());
    QCOMPARE(f.changes.Take(), 0);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Sample()));
    QCOMPARE(f.fileName->text(), QStringLiteral("/stamps/seal.png"));
    QCOMPARE(f.horizontal->currentText(), QStringLiteral("Right"));
    QCOMPARE(f.vertical->currentText(), QStringLiteral("Bottom"));
    QCOMPARE(f.left->value(), 1);
    QCOMPARE(f.top->value(), 22);
    QCOMPARE(f.right->value(), 333);
    QCOMPARE(f.bottom->value(), 999);
    QCOMPARE(f.blending->currentText(), QStringLiteral("Multiply"));
    QCOMPARE(f.opacity->value(), 40);
    QCOMPARE(f.opacitySlider->value(), 40);
}

void TestYDSignWidget::AChangeAfterShowingIsAnnouncedOnce()
{
    Fixture f;
    for (int round = 0; round < 3; ++round)
        f.widget.SetValue(Sample());
    f.left->setValue(8);
    f.horizontal->setCurrentIndex(1);
    f.vertical->setCurrentIndex(1);
    f.blending->setCurrentIndex(0);
    f.opacitySlider->setValue(1);
    QCOMPARE(f.changes.Take(), 5);
}

void TestYDSignWidget::ResetShowsTheDefaultsAndAnnouncesOnce()
{
    Fixture f;
    f.widget.SetValue(Sample());
    f.widget.Reset();
    QCOMPARE(f.changes.Take(), 1);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
    QVERIFY(f.fileName->text().isEmpty());
    QCOMPARE(f.horizontal->currentIndex(), 0);
    QCOMPARE(f.opacity->value(), 100);
    f.widget.Reset(); // nothing to change is announced as well
    QCOMPARE(f.changes.Take(), 1);
}

void TestYDSignWidget::TheRecordIsStoredInItsOrder()
{
    QCOMPARE(Written(Sample()), Stored(0x42, {1, 22, 333, 999}, QStringLiteral("/stamps/seal.png"), 13, 40));
    QCOMPARE(Written(Params()),
             QByteArray("KVSign 1.00000") + QByteArray::fromHex("00000021"
                                                                "00000005000000050000000500000005"
                                                                "ffffffff"
                                                                "00000000"
                                                                "00000064"));
}

void TestYDSignWidget::WhatIsStoredIsRead()
{
    QDataStream stream(Written(Sample()));
    Params params;
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Sample()));
    QVERIFY(stream.atEnd());
}

void TestYDSignWidget::AnyNumbersAreKept_data()
{
    QTest::addColumn<int>("number");
    for (const int number : {Lowest, -1, 0, 1000, Highest})
        QTest::newRow(qPrintable(QString::number(number))) << number;
}

void TestYDSignWidget::AnyNumbersAreKept()
{
    QFETCH(int, number);
    const int opposite = number == Highest ? Lowest : Highest;
    const QByteArray bytes =
        Stored(number, {opposite, number, number, opposite}, QStringLiteral("x"), number, number);
    QDataStream stream(bytes);
    Params params;
    QVERIFY(params.Read(stream));
    Fixture f;
    f.widget.SetValue(params);
    QCOMPARE(Written(f.widget.GetValue()), bytes);
    QCOMPARE(f.left->value(), qBound(0, opposite, 999));
    QCOMPARE(f.top->value(), qBound(0, number, 999));
    QCOMPARE(f.opacity->value(), qBound(0, number, 100));
    QCOMPARE(f.opacitySlider->value(), f.opacity->value());
    f.right->setValue(f.right->value() == 17 ? 18 : 17); // one edge, the others stay
    QCOMPARE(f.widget.GetValue().margins.left(), opposite);
    QCOMPARE(f.widget.GetValue().margins.right(), 17);
    QCOMPARE(f.changes.Take(), 1);
}

void TestYDSignWidget::ALongFileNameIsKept()
{
    const QString name = QStringLiteral("/") + QString(10'000'000, QChar(0x4e2d));
    QDataStream stream(Stored(33, {5, 5, 5, 5}, name, 0, 100));
    Params params;
    stream >> params;
    QVERIFY(params.fileName == name);
    Fixture f;
    f.widget.SetValue(params);
    QVERIFY(f.widget.GetValue().fileName == name);
    QCOMPARE(f.changes.Take(), 0);
}

void TestYDSignWidget::ALengthBeyondTheBytesThereFails()
{
    for (const char* const length : {"fffffffe", "fffffffd", "80000000", "7ffffffe", "00000010"}) {
        QByteArray bytes = Stored(33, {5, 5, 5, 5}, QString(), 0, 100);
        bytes.replace(14 + 20, 4, QByteArray::fromHex(length));
        QDataStream stream(bytes);
        Params params;
        QVERIFY2(!params.Read(stream), length);
    }
}

void TestYDSignWidget::ACutRecordGivesDefaultsAndOneLine()
{
    const QByteArray whole = Written(Sample());
    for (int length = 0; length < whole.size(); ++length) {
        const LoggedMessages logged(QtDebugMsg);
        QDataStream stream(whole.left(length));
        Params params = Sample();
        stream >> params;
        QVERIFY2(YDRecord::Equal(params, Params()), qPrintable(QString::number(length)));
        QCOMPARE(logged.All(), QStringList{QStringLiteral("[src/YDSignWidget:539] Read sign data error.")});
    }
}

void TestYDSignWidget::AnotherVersionIsRefused()
{
    QByteArray bytes = Written(Sample());
    bytes.replace("1.00000", "1.00001");
    QDataStream stream(bytes);
    Params params = Sample();
    QVERIFY(!params.Read(stream));
    QVERIFY(YDRecord::Equal(params, Sample())); // untouched
}

void TestYDSignWidget::AWriteThatFailsIsLogged()
{
    const LoggedMessages logged(QtDebugMsg);
    QDataStream stream(QByteArray(100, 'x'));
    stream << Params();
    QCOMPARE(logged.All(), QStringList{QStringLiteral("[src/YDSignWidget:526] Write sign data error.")});
}

void TestYDSignWidget::ChoosingAFileSetsItsName()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("stamp.png"));
    QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    Fixture f;
    InTheDialog([&file](QFileDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Select an image"));
        QCOMPARE(dialog.nameFilters(), QStringList{QStringLiteral("Pictures (*.png)")});
        Choose(dialog, file);
    });
    f.select->click();
    QCOMPARE(f.widget.GetValue().fileName, file);
    QCOMPARE(f.fileName->text(), file);
    QCOMPARE(f.changes.Take(), 1);
    InTheDialog([&file](QFileDialog& dialog) { Choose(dialog, file); });
    QCOMPARE(f.widget.GetOpenFileNames(), QStringList{file});
    QCOMPARE(f.changes.Take(), 0);
}

void TestYDSignWidget::CancellingTheFileDialogChangesNothing()
{
    Fixture f;
    f.widget.SetValue(Sample());
    InTheDialog([](QFileDialog& dialog) { dialog.reject(); });
    f.select->click();
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Sample()));
    QCOMPARE(f.fileName->text(), Sample().fileName);
    QCOMPARE(f.changes.Take(), 0);
}

void TestYDSignWidget::TheFileDialogBeginsWhereTheLastFileIs()
{
    const QTemporaryDir folder;
    const QTemporaryDir other;
    KVApplication::SetPathOpen(other.path());
    Fixture f;
    Params params;
    params.fileName = folder.filePath(QStringLiteral("gone.png"));
    f.widget.SetValue(params);
    QString began;
    InTheDialog([&began](QFileDialog& dialog) { began = dialog.directory().canonicalPath(); });
    f.select->click();
    QCOMPARE(began, QDir(folder.path()).canonicalPath());
}

void TestYDSignWidget::TheFileDialogBeginsWhereTheHostWasLast()
{
    const QTemporaryDir folder;
    KVApplication::SetPathOpen(folder.path());
    Fixture f;
    QString began;
    InTheDialog([&began](QFileDialog& dialog) { began = dialog.directory().canonicalPath(); });
    f.select->click();
    QCOMPARE(began, QDir(folder.path()).canonicalPath());
}

void TestYDSignWidget::WithoutReadablePicturesThereIsNoFileDialog()
{
    ReadableKinds().clear();
    Fixture f;
    bool isOpened = false;
    QTimer::singleShot(0, &f.widget, [&isOpened] {
        if (QWidget* const dialog = QApplication::activeModalWidget()) {
            isOpened = true;
            dialog->close();
        }
    });
    QCOMPARE(f.widget.GetOpenFileNames(), QStringList());
    f.select->click();
    QCoreApplication::processEvents();
    QVERIFY(!isOpened);
    QVERIFY(!f.widget.findChild<QFileDialog*>());
    QCOMPARE(f.changes.Take(), 0);
}

void TestYDSignWidget::TheWidgetMayGoWhileTheFileDialogIsOpen()
{
    auto widget = std::make_unique<YDSignWidget>(nullptr, Qt::WindowFlags());
    InTheDialog([&widget](QFileDialog&) { widget.reset(); });
    widget->OnSelectFileName();
    QVERIFY(!widget);
}

void TestYDSignWidget::ConvertingChangesNoPixel()
{
    Fixture f;
    f.widget.SetValue(Sample());
    const RGBA32iImage source = TestPictures::Noise(40, 30);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), source));
}

QTEST_MAIN(TestYDSignWidget)
#include "tst_YDSignWidget.moc"
